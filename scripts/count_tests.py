#!/usr/bin/env python3
"""Sums up runs of CTest from their JUnit files: what was skipped and why; the last line counts all tests.

count_tests.py NAME=FILE...   NAME says which run it was; the exit status is 1 if a test failed or none ran
"""
import collections
import re
import sys
import xml.etree.ElementTree as ElementTree

# GoogleTest gives the reason in the line below "Skipped"; a skipped procedure of a window test has it in its own line.
REASON = re.compile(r"^.*: Skipped\n(.+)$|^SKIP\s*: ([^\n]+)$", re.MULTILINE)


def main():
    total = collections.Counter()
    for argument in sys.argv[1:]:
        name, _, file = argument.partition("=")
        counts, reasons = collections.Counter(), collections.defaultdict(list)
        for test in ElementTree.parse(file).iter("testcase"):
            output = test.findtext("system-out", "")
            status = {"run": "passed", "fail": "failed"}.get(test.get("status"), "skipped")
            counts[status] += 1
            found = [first or second for first, second in REASON.findall(output)]
            if status == "skipped" and not found:
                found = [test.find("skipped").get("message", "") if test.find("skipped") is not None else ""]
            for reason in found:
                reasons[reason.strip() or "no reason given"].append(test.get("name"))
        print(f"{name}: {counts['passed']} passed, {counts['failed']} failed, {counts['skipped']} skipped")
        for reason, tests in sorted(reasons.items()):
            print(f"  skipped, {reason}: {len(tests)} ({', '.join(tests)})")
        total += counts
    print(f"{total['passed']} passed, {total['failed']} failed, {total['skipped']} skipped")
    return 1 if total["failed"] or not total["passed"] else 0


if __name__ == "__main__":
    sys.exit(main())

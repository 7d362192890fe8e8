#!/usr/bin/env python3
"""Do the tests see faults? Changes one operator or constant of the logic, builds what depends on it, runs the tests that
can see it, puts it back, and lists the changes that no test saw.

plant_faults.py --build build/release --count 40       40 changes, chosen at random, as many in each room
plant_faults.py --rooms reduction,output --seed 7      other rooms; another choice
plant_faults.py --at reduction/repeat_sums.cpp:41      every change of one line
plant_faults.py --list                                 what could be changed, without doing it
plant_faults.py --self-check                           checks the finder and that a planted fault is put back

A source is changed where it is, so run it in a worktree of its own. It is put back whatever happens: after Ctrl+C at
once, after a kill or a power cut by the next run in the same build folder.
"""
import argparse
import collections
import contextlib
import hashlib
import json
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile
import time

ROOMS = "reduction,output,display,occam,import,projections,database"
SLOW = ("tests/kills/", "tests/soak/")  # minutes each, and made for other faults

# Comments, texts and directives hold no logic; reserved sizes, gaps in a window and the log change no result.
NO_LOGIC = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|(?<![\w])\'(?:\\.|[^\'\\\n])+\''
    r"|^[ \t]*#(?:\\\n|[^\n])*"
    r"|\bstatic_assert\b[^;]*;|\b(?:reserve|setSpacing|setContentsMargins|write_debug)\([^;]*;",
    re.DOTALL | re.MULTILINE,
)
# The format of the sources puts spaces around operators of two operands and none inside of template brackets.
KINDS = [
    (re.compile(r"(?<=\s)(?:<=|>=|==|!=|<|>)(?=\s)"),
     {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)}),
    (re.compile(r"(?<=\s)[-+*/]=?(?=\s)"),
     {"+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",)}),
    (re.compile(r"(?<=\s)(?:&&|\|\|)(?=\s)"), {"&&": ("||",), "||": ("&&",)}),
    (re.compile(r"(?<![\w)])!(?=[\w(])"), {"!": ("",)}),
    (re.compile(r"\b(?:true|false)\b"), {"true": ("false",), "false": ("true",)}),
    (re.compile(r"\bstd::(?:min|max)(?:_element)?(?=[(<])"),
     {"std::min": ("std::max",), "std::max": ("std::min",),
      "std::min_element": ("std::max_element",), "std::max_element": ("std::min_element",)}),
    (re.compile(r"\.(?:begin|end)\(\)"), {".begin()": (".begin() + 1",), ".end()": (".end() - 1",)}),
]
NUMBER = re.compile(r"(?<![\w.'])(\d[\d']*(?:\.\d*)?(?:[eE][-+]?\d+)?)([fFuUlLzZ]*)(?![\w.'])")

TEXT = "\0"  # stands for the characters of a text

Change = collections.namedtuple("Change", "path line start end after")


def joins_texts(logic, match):
    return match[0] == "+" and TEXT in (logic[: match.start()].rstrip()[-1:], logic[match.end() :].lstrip()[:1])


def number_changes(digits, before):
    digits = digits.replace("'", "")
    if re.search(r"[.eE]", digits):
        value = float(digits)
        return [f"{new:.15g}" if re.search(r"[.e]", f"{new:.15g}") else f"{new:.1f}"
                for new in ([1.0] if value == 0 else [2 * value, 1.01 * value])]
    if len(digits) > 1 and digits[0] == "0":
        return []  # octal: rights of files
    if digits != "1":
        return [str(int(digits) + 1)]
    return ["0"] if before == "-" else ["0", "2"]  # -2 says as well as -1 that there is nothing


def changes_of(path, text):
    """Every change of a source, in its order."""
    logic = NO_LOGIC.sub(lambda found: re.sub(r"[^\n]", TEXT if found[0][0] in "\"'R" else " ", found[0]), text)
    found = [(match, after) for pattern, table in KINDS for match in pattern.finditer(logic)
             for after in table[match[0]] if not joins_texts(logic, match)]
    found += [(match, new + match[2]) for match in NUMBER.finditer(logic)
              for new in number_changes(match[1], logic[match.start() - 1])]
    found.sort(key=lambda pair: pair[0].start())
    return [Change(path, text.count("\n", 0, match.start()) + 1, match.start(), match.end(), after)
            for match, after in found]


def changes_of_room(root, room, with_windows):
    changes = []
    for path in sorted((root / room).rglob("*.cpp")):
        name = path.relative_to(root).as_posix()
        if with_windows or "/windows/" not in name:
            changes += changes_of(name, path.read_text(encoding="utf-8"))
    return changes


def chosen(by_room, count, seed):
    """As many of each room, of each place at most one."""
    dice = random.Random(seed)
    rows = []
    for room in sorted(by_room):
        changes = by_room[room][:]
        dice.shuffle(changes)
        rows.append(list({(c.path, c.start): c for c in changes}.values()))
    turns = max((len(row) for row in rows), default=0)
    return [row[turn] for turn in range(turns) for row in rows if turn < len(row)][:count]


def lines_of(text, change):
    """The changed line before and after."""
    begin = text.rfind("\n", 0, change.start) + 1
    end = text.find("\n", change.end)
    return text[begin:end].strip(), (text[begin : change.start] + change.after + text[change.end : end]).strip()


@contextlib.contextmanager
def planted(root, change, safe):
    """The source with the change; beside it in `safe` what it was, until it is that again."""
    path = root / change.path
    text = path.read_text(encoding="utf-8")
    keep = safe.with_suffix(".new")
    keep.write_text(json.dumps({"path": change.path, "text": text}), encoding="utf-8")
    keep.replace(safe)
    try:
        path.write_text(text[: change.start] + change.after + text[change.end :], encoding="utf-8")
        yield lines_of(text, change)
    finally:
        put_back(root, safe)


def put_back(root, safe):
    if safe.exists():
        kept = json.loads(safe.read_text(encoding="utf-8"))
        # Written, so that it is newer than what was built from the change.
        (root / kept["path"]).write_text(kept["text"], encoding="utf-8")
        safe.unlink()


def run(command, limit=None, **options):
    """Status, output; a process that takes too long or is interrupted goes with all that it has started."""
    with tempfile.TemporaryFile("w+", encoding="utf-8", errors="replace") as output:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                   start_new_session=True, **options)
        try:
            status = process.wait(limit)
        except subprocess.TimeoutExpired:
            status = "time limit"
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
        output.seek(0)
        return status, output.read()


class Build:
    """A build folder of Ninja and the test programs that it knows."""

    def __init__(self, root, folder, jobs, only):
        self.root, self.folder, self.jobs = root, folder.resolve(), jobs
        if not (self.folder / "build.ninja").exists():
            sys.exit(f"{folder}: no build by Ninja; see CMakePresets.json")
        self.make("build.ninja")  # knows new sources, too
        commands = json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8"))
        self.objects = {entry["file"]: self.folder / entry["output"] for entry in commands if "output" in entry}
        targets = self.tool("targets", "all")
        self.tests = [name for name in re.findall(r"^(tests/\S+): CXX_EXECUTABLE", targets, re.MULTILINE)
                      if re.search(only, name) and not name.startswith(SLOW) and not name.endswith("graph_pictures")]
        self.inputs = {test: set(self.tool("inputs", test).splitlines()) for test in self.tests}
        self.seconds = {}
        self.safe = self.folder / "planted_fault.json"

    def tool(self, *arguments):
        return subprocess.run(["ninja", "-C", self.folder, "-t", *arguments], check=True, text=True,
                              capture_output=True).stdout

    def tests_of(self, path):
        """The test programs of the room itself without its windows, and all others that have the source in them."""
        room = path.split("/")[0]
        source = str(self.root / path)
        sees = [test for test in self.tests if source in self.inputs[test]]
        own = [test for test in sees if test.startswith(f"tests/{room}/") and "/windows/" not in test]
        return own, [test for test in sees if test not in own]

    def make(self, *targets):
        return run(["ninja", "-C", str(self.folder), f"-j{self.jobs}", *targets])

    def sum_of(self, path):
        made = self.objects.get(str(self.root / path))
        return hashlib.sha256(made.read_bytes()).hexdigest() if made and made.exists() else None

    def run_test(self, name, limit, *arguments):
        program = self.folder / name
        # Without a display, and the first failure of GoogleTest is enough.
        return run([str(program), *arguments], limit, cwd=program.parent,
                   env=dict(os.environ, QT_QPA_PLATFORM="offscreen", GTEST_FAIL_FAST="1"))

    def test(self, name, limit):
        """What a test program has to say against the sources as they are; nothing if it passes."""
        began = time.monotonic()
        status, output = self.run_test(name, limit)
        self.seconds.setdefault(name, time.monotonic() - began)
        first = re.search(r"^\[  FAILED  \] (\S+)|^FAIL!  : \w+::(\w+)", output, re.MULTILINE)
        if not status or not first:
            return status and f"status {status}"
        # A busy machine fails a test now and then: it has to fail again, alone or with all others.
        if not self.run_test(name, limit, f"--gtest_filter={first[1]}" if first[1] else first[2])[0]:
            status = self.run_test(name, limit)[0]
        return status and (first[1] or first[2])

    def keep_passing(self, tests):
        """Drops tests that fail as things are; how long each of the others takes is kept for its limit."""
        tests = [test for test in self.tests if test in tests and test not in self.seconds]
        status, output = self.make(*tests) if tests else (0, "")
        if status:
            sys.exit(f"The sources don't build as they are:\n{output[-3000:]}")
        for test in tests:
            if failure := self.test(test, 1800):
                print(f"left out, as it fails without any change: {test} ({failure})", flush=True)
                self.tests.remove(test)

    def verdict(self, change, tests, sum_before):
        """What comes of the planted change, and by which test."""
        for test in tests:
            if self.make(test)[0]:
                return "not compiled", ""
            if sum_before and self.sum_of(change.path) == sum_before:
                return "same program", ""
            failure = self.test(test, 30 + 10 * self.seconds[test])
            if failure:
                return "caught", f"{test.rpartition('/')[2]}: {failure}"
        return "survived", ""


def plant_with(root, build, changes, which, told):
    """Plants each change and runs its tests, those of its room (0) or all others (1)."""
    build.keep_passing({test for change in changes for test in build.tests_of(change.path)[which]})
    survived = []
    for number, change in enumerate(changes, 1):
        began = time.monotonic()
        sum_before = build.sum_of(change.path)
        with planted(root, change, build.safe) as (before, after):
            outcome, by = build.verdict(change, build.tests_of(change.path)[which], sum_before)
        told[change] = outcome
        if outcome == "survived":
            survived.append(change)
        print(f"{number}/{len(changes)} {outcome}{' ' + by if by else ''} ({time.monotonic() - began:.0f} s)\n"
              f"    {change.path}:{change.line}: {before}\n        {after}", flush=True)
        if build.sum_of(change.path) != sum_before:  # as it was, for the next change of this source
            build.make(str(build.objects[str(root / change.path)].relative_to(build.folder)))
    return survived


def plant(root, build, changes):
    told = {}
    try:
        print(f"With the tests of each room: {len(changes)} changes", flush=True)
        survived = plant_with(root, build, changes, 0, told)
        print(f"With the tests of windows and of the rooms above: {len(survived)} changes", flush=True)
        plant_with(root, build, survived, 1, told)
    finally:
        report(root, told)


def report(root, told):
    outcomes = ["caught", "survived", "same program", "not compiled"]
    print("\nSurvivors:")
    counts = collections.defaultdict(collections.Counter)
    for change, outcome in told.items():
        counts[change.path.split("/")[0]][outcome] += 1
        if outcome == "survived":
            before, after = lines_of((root / change.path).read_text(encoding="utf-8"), change)
            print(f"{change.path}:{change.line}\n    {before}\n    {after}")
    print("\n" + "".join(f"{head:>14}" for head in ["room", "planted", *outcomes]))
    total = sum(counts.values(), collections.Counter())
    for room, row in [*sorted(counts.items()), ("all", total)]:
        print("".join(f"{cell:>14}" for cell in [room, sum(row.values()), *(row[o] for o in outcomes)]), flush=True)


def self_check():
    text = (
        "#include <a-b>\n"
        "static_assert(sizeof(int) == 4);\n"
        "// if a < b && c\n"
        "bool f(const std::vector<int>& x, Table&& t) {\n"
        "  x.reserve(8);\n"
        '  log("n - 1 == 0", \'0\');\n'
        "  /* 7 */\n"
        "  return x.size() >= 1'000U && !t->empty(0.5F);\n"
        "}\n"
        "const int least = std::min(07, -1) - n;\n"
        'const auto raw = R"x(a < 1)x" == *x.begin();\n'
        'const std::string note = "a" + name + "b";\n'
    )
    expected = [
        (8, ">=", ">"), (8, ">=", "<"), (8, "1'000U", "1001U"), (8, "&&", "||"), (8, "!", ""), (8, "0.5F", "1.0F"),
        (8, "0.5F", "0.505F"), (10, "std::min", "std::max"), (10, "1", "0"), (10, "-", "+"),
        (11, "==", "!="), (11, ".begin()", ".begin() + 1"),
    ]
    changes = changes_of("room/source.cpp", text)
    found = [(c.line, text[c.start : c.end], c.after) for c in changes]
    faults = [f"not found: {e}" for e in expected if e not in found] + [f"no change: {f}" for f in found if f not in expected]
    with tempfile.TemporaryDirectory() as folder:
        root, safe = pathlib.Path(folder), pathlib.Path(folder, "planted_fault.json")
        source = root / "room/source.cpp"
        source.parent.mkdir()
        source.write_text(text, encoding="utf-8")
        try:
            with planted(root, changes[0], safe) as lines:
                if lines != (text.split("\n")[7].strip(), text.split("\n")[7].strip().replace(">=", ">")):
                    faults.append(f"other lines: {lines}")
                if source.read_text(encoding="utf-8") != text.replace(">=", ">"):
                    faults.append("not planted")
                kept = safe.read_bytes()
                raise KeyboardInterrupt
        except KeyboardInterrupt:
            pass
        if source.read_text(encoding="utf-8") != text or safe.exists():
            faults.append("not put back after an interruption")
        source.write_text("changed", encoding="utf-8")  # a kill leaves the change and what was kept
        safe.write_bytes(kept)
        put_back(root, safe)
        if source.read_text(encoding="utf-8") != text or safe.exists():
            faults.append("not put back after a kill")
        status, _ = run(["sleep", "60"], 0.1)
        if status != "time limit" or run(["false"])[0] != 1 or run(["true"])[0] != 0:
            faults.append("processes aren't judged by their status")
    if chosen({"room": changes}, 5, 1) != chosen({"room": changes}, 5, 1) or len(chosen({"room": changes}, 99, 1)) != 10:
        faults.append("not one choice for one seed, or a place twice")
    print("\n".join(f"self-check: {f}" for f in faults) if faults else "self-check: nothing to report")
    return 1 if faults else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rooms", default=ROOMS, help="separated by commas (%(default)s)")
    parser.add_argument("--windows", action="store_true", help="the sources of the rooms' windows, too")
    parser.add_argument("--count", type=int, default=40, help="how many changes (%(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="another choice of changes for each (%(default)s)")
    parser.add_argument("--build", type=pathlib.Path, default="build/release", help="a build folder (%(default)s)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="compilers at once (%(default)s)")
    parser.add_argument("--at", action="append", metavar="FILE:LINE", help="every change of this line instead; may be repeated")
    parser.add_argument("--tests", default="", help="a regular expression: only test programs with such a name")
    parser.add_argument("--list", action="store_true", help="only list what could be changed")
    parser.add_argument("--self-check", action="store_true", help="check this script")
    arguments = parser.parse_args()
    if arguments.self_check:
        return self_check()

    root = pathlib.Path(__file__).resolve().parents[1]
    build = Build(root, arguments.build, arguments.jobs, arguments.tests)
    put_back(root, build.safe)
    if arguments.at:
        places = {tuple(place.rsplit(":", 1)) for place in arguments.at}
        changes = [change for name in sorted({name for name, _ in places})
                   for change in changes_of(name, (root / name).read_text(encoding="utf-8"))
                   if (name, str(change.line)) in places]
    else:
        by_room = {room: changes_of_room(root, room, arguments.windows) for room in arguments.rooms.split(",")}
        changes = sum(by_room.values(), []) if arguments.list else chosen(by_room, arguments.count, arguments.seed)
    if arguments.list:
        for change in changes:
            before, after = lines_of((root / change.path).read_text(encoding="utf-8"), change)
            print(f"{change.path}:{change.line}: {before}  ->  {after}")
        print(f"{len(changes)} changes")
        return 0
    for stop in (signal.SIGINT, signal.SIGTERM):  # a shell's background ignores the first
        signal.signal(stop, signal.default_int_handler)
    try:
        plant(root, build, changes)
    except KeyboardInterrupt:
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Reports every include that no arrow of the architecture allows, Qt outside the windows, circles of modules, and
conditions of the preprocessor outside platform: what differs between systems is a function there or a source that the
build chooses.

check_arrows.py [ROOT]        checks the tree; the exit status is 1 if there is something to report
check_arrows.py --self-check  checks that planted faults are found
"""
import pathlib
import re
import sys
import tempfile

# A room and what it may use; what those may use is allowed with them. "x" is the folder x with all below it or the
# module x.h, "x/." only what is right in the folder x; "!x" is left out of what the others give.
NUMERICS = "core/number_text core/text_fields core/scope_guard core/absent_value numerics/."
FORMATS = "core !core/session_state !core/user_interface numerics/impedance numerics/gridding numerics/geodesy formats/."
WIDGETS = "platform/graph platform/widgets platform/windows"
PLOTS = "platform/graph/plot_table platform/graph/axis_limits platform/graph/image_palette"
ARROWS = {
    "platform/files": "",
    "platform/console": "",
    "platform/settings_store": "",
    "core": "platform/files",
    "platform/dao": "core",
    "platform/system": "core",
    "platform/graph": "core platform/settings_store",
    "platform/graph/plot_table": "core/absent_value platform/graph/axis_limits",  # the parts of the chart without Qt
    "platform/graph/axis_limits": "platform/graph/plot_table",
    "platform/graph/image_palette": "platform/graph/plot_table",
    "platform/widgets": "core platform/settings_store",
    "platform/windows": "core platform/settings_store platform/widgets",
    "numerics": NUMERICS,
    "numerics/geodesy": NUMERICS,
    "numerics/gridding": NUMERICS,
    "numerics/impedance": NUMERICS,
    "numerics/occam_inversion": NUMERICS,
    "numerics/rhoplus": NUMERICS,
    "numerics/section": NUMERICS,
    "formats": FORMATS,
    "formats/csv": FORMATS,
    "formats/edi": f"{FORMATS} formats/transfer_function",
    "formats/em1dfm": FORMATS,
    "formats/emtf_xml": f"{FORMATS} formats/transfer_function",
    "formats/fixed_column": FORMATS,
    "formats/geosoft": FORMATS,
    "formats/j_format": f"{FORMATS} formats/transfer_function",
    "formats/occam": FORMATS,
    "formats/places": FORMATS,
    "formats/transfer_function": FORMATS,
    "formats/z_file": f"{FORMATS} formats/transfer_function",
    "formats/zonge": f"{FORMATS} formats/transfer_function",
    "database": "platform/dao",
    "database/windows": f"database {WIDGETS}",
    "projections": "database numerics/geodesy platform/settings_store",
    "projections/windows": f"projections {WIDGETS}",
    "reduction": "database",
    "survey_edits": "reduction",
    "survey_edits/windows": f"survey_edits {WIDGETS}",
    "display": f"reduction projections {PLOTS}",
    "display/windows": f"display {WIDGETS}",
    "import": "formats reduction projections numerics",
    "import/windows": f"import projections/windows {WIDGETS}",
    "tensor": f"reduction projections numerics {PLOTS}",
    "tensor/windows": f"tensor rhoplus display/windows {WIDGETS}",
    "output": "tensor formats numerics platform/settings_store",
    "rhoplus": "display output",
    "exchange": "rhoplus formats",
    "exchange/windows": f"exchange {WIDGETS}",
    "rhoplus/windows": f"rhoplus display/windows {WIDGETS}",
    "occam": f"output projections {PLOTS}",
    "occam/windows": f"occam {WIDGETS}",
    "python/bindings": "exchange import rhoplus tensor occam survey_edits platform/system",
    "samples": "core numerics/impedance numerics/section",
    "batch": "exchange import rhoplus tensor occam survey_edits platform/console platform/system",
    "batch/offscreen_application": "",
    "batch/plots_command": "batch display/windows tensor/windows",  # drawn by the charts of the windows
    "batch/pseudosection_command": "batch tensor/windows",
    "batch/section_command": "batch occam/windows",
    "app": "database/windows display/windows exchange/windows import/windows occam/windows rhoplus/windows survey_edits/windows "
    "tensor/windows platform/system samples",
    "screenshots": "app",
}
QT = re.compile(r"(.*/windows|platform/(graph|widgets)|app|screenshots|batch/offscreen_application)$")
# In the dialect a statement holds expressions and an expression holds statements.
CIRCLES = [{"platform/dao/expression_translator", "platform/dao/statement_translator"}]
CONDITION = re.compile(r"^\s*#\s*(?:if|elif)[^\n]*", re.MULTILINE)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]|<header[^>]*>()([^<]+)</header>', re.MULTILINE)


def within(module, place):
    return module.rpartition("/")[0] == place[:-2] if place.endswith("/.") else (module + "/").startswith(place + "/")


def room_of(module):
    return max((room for room in ARROWS if within(module, room)), key=len, default=None)


def may_use(room, module):
    own = ARROWS[room].split()
    if within(module, room):
        return True
    if any(within(module, place[1:]) for place in own if place.startswith("!")):
        return False
    reached = [place for place in own if not place.startswith("!")]
    for place in reached:  # grows with what the rooms reached may use
        reached += [p for p in ARROWS.get(place, "").split() if not p.startswith("!") and p not in reached]
    return any(within(module, place) for place in reached)


def circles_of(uses):
    """The sets of modules that include one another, directly or over others (Tarjan)."""
    number, low, stack, found = {}, {}, [], []

    def visit(module):
        number[module] = low[module] = len(number)
        stack.append(module)
        for used in sorted(uses.get(module, ())):
            if used not in number:
                visit(used)
                low[module] = min(low[module], low[used])
            elif used in stack:
                low[module] = min(low[module], number[used])
        if low[module] == number[module]:
            circle = set(stack[stack.index(module) :])
            del stack[-len(circle) :]
            if len(circle) > 1:
                found.append(circle)

    for module in sorted(uses):
        if module not in number:
            visit(module)
    return found


def faults_of(root):
    faults, uses = [], {}
    rooms = sorted({room.split("/")[0] for room in ARROWS})
    for path in sorted(p for room in rooms for p in (root / room).rglob("*") if p.suffix in {".h", ".cpp", ".ui"}):
        name = path.relative_to(root).as_posix()
        module = name.rsplit(".", 1)[0]
        room = room_of(module)
        if room is None:
            faults.append(f"{name}: in no room of the table")
            continue
        text = path.read_text(encoding="utf-8")
        if not room.startswith("platform/"):
            for match in CONDITION.finditer(text):
                line = text.count("\n", 0, match.start() + len(match[0]) - len(match[0].lstrip())) + 1
                faults.append(f"{name}:{line}: a condition outside platform: {match[0].strip()}")
        for match in INCLUDE.finditer(text):
            bracket, header = match[1], match[2] or match[4]
            where = f"{name}:{text.count(chr(10), 0, match.start()) + 1}"
            if bracket == "<":
                if re.match(r"(Q[A-Z]|Qt|qcustomplot)", header) and not QT.match(room):
                    faults.append(f"{where}: Qt outside the windows: <{header}>")
            elif "/" not in header:
                if not (header.startswith("ui_") or header.endswith(".moc")):
                    faults.append(f"{where}: name a header with its room: {header}")
            else:
                used = header.rsplit(".", 1)[0]
                if not may_use(room, used):
                    faults.append(f"{where}: no arrow from {room} to {header}")
                if used != module:
                    uses.setdefault(module, set()).add(used)
    faults += ["circle: " + ", ".join(sorted(c)) for c in circles_of(uses) if c not in CIRCLES]
    return faults


def self_check():
    """One fault of each kind is planted in a tree of its own; exactly these are to be found."""
    planted = {
        "core/a.h": '#include "core/b.h"\n',
        "core/b.cpp": '#include "core/b.h"\n#include "core/c.h"\n',
        "core/c.h": '#include "core/a.h"\n#include "platform/files/safe_files.h"\n',
        "reduction/up.cpp": '#include "database/reading.h"\n#  include "display/selection.h"\n',
        "reduction/bare.cpp": '#include "bare.h"\n',
        "formats/edi/state.cpp": '#include "core/session_state.h"\n#include "core/text_fields.h"\n',
        "formats/edi/other.cpp": '#include "formats/zonge/zonge_text.h"\n#include "formats/field_values.h"\n',
        "numerics/section/file.cpp": '#include "core/line_reader.h"\n#include "numerics/constants.h"\n',
        "occam/results/look.h": '#include "platform/graph/plot_table.h"\n#include "platform/graph/axis_view.h"\n',
        "occam/results/colour.h": "#include <vector>\n#include <QColor>\n",
        "occam/windows/form.ui": '<header location="global">app/Form_main.h</header>\n',
        "occam/windows/form.cpp": '#include <QWidget>\n#include "ui_form.h"\n',
        "platform/graph/plot_table.h": "#include <QPen>\n",
        "platform/files/system.cpp": "#ifdef _WIN32\n#endif\n",
        "tensor/system.cpp": "\n#if defined(_WIN32)\n#endif\n",
    }
    expected = [
        "formats/edi/other.cpp:1: no arrow from formats/edi to formats/zonge/zonge_text.h",
        "formats/edi/state.cpp:1: no arrow from formats/edi to core/session_state.h",
        "numerics/section/file.cpp:1: no arrow from numerics/section to core/line_reader.h",
        "occam/results/colour.h:2: Qt outside the windows: <QColor>",
        "occam/results/look.h:2: no arrow from occam to platform/graph/axis_view.h",
        "occam/windows/form.ui:1: no arrow from occam/windows to app/Form_main.h",
        "platform/graph/plot_table.h:1: Qt outside the windows: <QPen>",
        "reduction/bare.cpp:1: name a header with its room: bare.h",
        "reduction/up.cpp:2: no arrow from reduction to display/selection.h",
        "tensor/system.cpp:2: a condition outside platform: #if defined(_WIN32)",
        "circle: core/a, core/b, core/c",
    ]
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in planted.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        found = faults_of(root)
    return [f"self-check: not found: {f}" for f in expected if f not in found] + [
        f"self-check: not planted: {f}" for f in found if f not in expected
    ]


def main():
    if sys.argv[1:] == ["--self-check"]:
        faults = self_check()
    else:
        faults = faults_of(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[1]))
    print("\n".join(faults) if faults else "arrows: nothing to report")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

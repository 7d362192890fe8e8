import gc
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import threading

import brenlox
import numpy as np
import pytest
from programs import BATCH, batch, needs_programs

pytestmark = needs_programs


@pytest.fixture
def path(made_survey, tmp_path):
    return pathlib.Path(shutil.copy(made_survey, tmp_path / "survey.mdb"))


@pytest.fixture
def survey(path):
    with brenlox.open(path) as opened:
        yield opened


def test_shows_what_the_batch_program_shows(path):
    shown = json.loads(batch("info", path, "--json"))
    with brenlox.open(path) as survey:
        assert survey.info() == shown
        assert survey.lines == [row["line"] for row in shown["lines"]]
        stations = survey.stations()
        assert [each.number for each in stations if each.line == "200E"] == shown["lines"][0]["stations"]
        assert survey.stations("200e") == [each for each in stations if each.line == "200E"]
        assert len(survey.files()) == shown["tables"]["FileTable"]
        assert survey.kinds("200E") == [(0, 100.0)]


def same(array, values):
    np.testing.assert_array_equal(array, np.array(values, dtype=np.float32))


def test_curves_are_those_of_the_batch_program(path):
    options = ("--line", "200E", "--station", 500, "--reference", 0, "--data-type", "ExHy", "--dipole", 100, "--json")
    merged = json.loads(batch("curve", path, *options, "--reduction", 2))
    repeats = json.loads(batch("curve", path, *options, "--reduction", 0))
    with brenlox.open(path, read_only=True) as survey:
        curve = survey.curve("200E", 500, "ExHy")
        same(curve.frequency, merged["frequencies"])
        same(curve.resistivity, [row[0] for row in merged["data"]])
        assert curve.id == merged["id"] and survey.refresh(curve).id == curve.id
        read = survey.repeats("200E", 500, "ExHy")
        assert [each.id for each in read] == [each["id"] for each in repeats]
        assert [each.id for each in survey.curves("200E", 500, "ExHy", reduction="raw")] == [each.id for each in read]
        with pytest.raises(ValueError, match="scan_rate"):
            survey.curve("200E", 500, "ExHy", reduction="averaged")
        for average in survey.curves("200E", 500, "ExHy", reduction="averaged"):
            one = survey.curve("200E", 500, "ExHy", reduction="averaged", scan_rate=average.scan_rate)
            np.testing.assert_array_equal(one.phase, average.phase)
        every = survey.curves()
        assert len(every) == len({each.id for each in every}) == len(survey.stations()) * 4
        with pytest.raises(ValueError, match="no line '7N'; it has 200E, 400E"):
            survey.curves("7N")
        with pytest.raises(ValueError, match="no station 77"):
            survey.curve("200E", 77, "ExHy")
    assert np.isfinite(curve.resistivity).all(), "arrays outlive the survey"
    gc.collect()
    with pytest.raises(ValueError):
        curve.resistivity[0] = 1.0
    with pytest.raises(brenlox.Error, match="closed"):
        survey.curves()


def test_table_has_a_row_for_each_point(survey):
    pytest.importorskip("pandas")
    table = survey.to_dataframe("200E", data_type="ExHy")
    curves = survey.curves("200E", data_type="ExHy")
    assert len(table) == sum(map(len, curves)) and set(table.line) == {"200E"}
    at = table[table.station == curves[3].station]
    np.testing.assert_array_equal(at.phase, curves[3].phase)
    assert table.resistivity_used.sum() == sum(np.isfinite(curve.masked()[0]).sum() for curve in curves)
    survey.switch(curves[3], False)
    again = survey.to_dataframe("200E", data_type="ExHy")
    assert not again[again.station == curves[3].station].phase_used.any()


def edits(survey):
    """Name and work of each edit, and how many it changes."""
    raw = survey.curves("200E", 500, "ExHy", reduction="raw")
    merged = survey.curves("200E")
    return {
        "a rule over repeats": (lambda: survey.mask(raw, lambda curve: curve.frequency > 10), "masks"),
        "phases of merged curves": (lambda: survey.mask(merged, slice(0, 2), component="phase"), "masks"),
        "repeats off": (lambda: survey.switch(raw[:2], False), "use"),
        "resistivity off": (lambda: survey.switch(merged, False, part="resistivity"), "use"),
        "static factors": (lambda: survey.set_static_factor(merged, 2.5), "static factor"),
    }


def test_each_edit_is_one_command_that_comes_back(survey):
    for name, (edit, kind) in edits(survey).items():
        before = rows_of_open(survey)
        assert survey.next_undo is None
        assert edit() > 0, name
        edited = rows_of_open(survey)
        assert edited != before and survey.next_undo.kind == kind, name
        assert edit() == 0, "nothing is left to change"
        assert survey.undo().kind == kind and rows_of_open(survey) == before, name
        assert survey.next_undo is None and survey.next_redo.kind == kind
        survey.redo()
        assert rows_of_open(survey) == edited, name
        survey.undo()
    survey.switch(survey.curves(reduction="raw"), False)
    assert survey.undo(progress=lambda share: False) is None and survey.next_undo is not None
    assert survey.undo().kind == "use"
    assert survey.undo() is None


def rows_of_open(survey):
    """All readings with everything that can be edited or follows."""
    return [(curve.id, curve.resistivity.tobytes(), curve.phase.tobytes(), curve.resistivity_counts.tobytes(),
             curve.phase_counts.tobytes(), curve.use, curve.use_resistivity, curve.use_phase, curve.static_factor)
            for reduction in ("raw", "averaged", "merged") for curve in survey.curves("200E", reduction=reduction)]


def test_batch_program_reads_what_was_edited_and_recalculation_changes_nothing_more(path):
    with brenlox.open(path) as survey:
        raw = survey.curves("200E", 500, "ExHy", reduction="raw")
        before = survey.curve("200E", 500, "ExHy")
        assert survey.mask(raw[0], raw[0].frequency > 10) > 0
        survey.switch(raw[1], False)
        followed = survey.refresh(before)
        assert not np.array_equal(followed.resistivity, before.resistivity)
        edited = rows_of_open(survey)
        survey.recalculate()
        assert rows_of_open(survey) == edited
    shown = json.loads(batch("curve", path, "--line", "200E", "--station", 500, "--reference", 0, "--data-type",
                             "ExHy", "--dipole", 100, "--json", "--reduction", 0))
    found = {each["id"]: each for each in shown}
    expected = np.stack([raw[0].resistivity_counts, raw[0].phase_counts], axis=1)
    expected[raw[0].frequency > 10] = 0
    np.testing.assert_array_equal(found[raw[0].id]["mask"], expected)
    assert found[raw[1].id]["use"][0] is False


def test_edits_refuse_what_they_can_t_do(survey):
    raw = survey.curves("200E", 500, "ExHy", reduction="raw")
    for points in (np.ones(3, bool), np.arange(len(raw[0])), [1.0]):
        with pytest.raises(ValueError, match="points: expected bool"):
            survey.mask(raw[0], points)
    with pytest.raises(ValueError, match="component"):
        survey.mask(raw, component="both of them")
    for factor in (0.0, -1.0, np.nan, np.inf, 1e60):
        with pytest.raises(ValueError, match="factor"):
            survey.set_static_factor(survey.curve("200E", 500, "ExHy"), factor)
    with pytest.raises(ValueError, match="merged"):
        survey.set_static_factor(raw, 2.0)
    assert survey.mask([]) == 0 and survey.next_undo is None


def test_frequencies_and_the_sign_of_ey_stay(path):
    with brenlox.open(path) as survey:
        frequency, enabled = survey.frequencies()
        assert enabled.all() and np.all(np.diff(frequency) > 0)
        survey.switch_frequencies(frequency < 1.0, False)
        survey.set_sign_of_ey("200E", 500, "turned")
        with pytest.raises(ValueError, match="chosen"):
            survey.switch_frequencies([True], False)
        with pytest.raises(ValueError, match="reference_type"):
            survey.frequencies(7)
    with brenlox.open(path) as survey:
        np.testing.assert_array_equal(survey.frequencies()[1], frequency >= 1.0)
        assert survey.sign_of_ey("200E", 500) == "turned" and survey.sign_of_ey("200E", 600) == "by rule"


def test_read_only_survey_leaves_nothing_and_refuses_edits(path):
    before = path.read_bytes()
    beside = sorted(path.parent.iterdir())
    with brenlox.open(path, read_only=True) as survey:
        curve = survey.curve("200E", 500, "ExHy")
        for edit in (lambda: survey.mask(curve), lambda: survey.switch(curve, False), survey.recalculate,
                     lambda: survey.set_sign_of_ey("200E", 500, "turned")):
            with pytest.raises(brenlox.Error, match="read-only|can't be written|only be read"):
                edit()
        assert sorted(path.parent.iterdir()) == beside
    assert path.read_bytes() == before and sorted(path.parent.iterdir()) == beside


def test_one_survey_at_a_time(path, tmp_path):
    other = shutil.copy(path, tmp_path / "other.mdb")
    survey = brenlox.open(path)
    with pytest.raises(brenlox.Error, match="A survey is open in this process"):
        brenlox.open(other)
    assert survey.lines == ["200E", "400E"]
    held = subprocess.run([BATCH, "info", path], capture_output=True, text=True)
    assert held.returncode != 0 and "open in another window or program" in held.stderr
    survey.close()
    survey.close()
    with brenlox.open(other):
        pass
    survey = brenlox.open(path)
    del survey
    gc.collect()
    with brenlox.open(other) as survey:
        assert survey.lines


HOLD = "import brenlox, sys; s = brenlox.open(sys.argv[1]); print('open', flush=True); sys.stdin.read()"


def test_survey_that_another_process_has_open(path):
    other = subprocess.Popen([sys.executable, "-c", HOLD, path], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                             text=True)
    try:
        assert other.stdout.readline() == "open\n"
        with pytest.raises(brenlox.Error, match="open in another window or program"):
            brenlox.open(path)
        with brenlox.open(path, read_only=True) as survey:
            assert survey.lines == ["200E", "400E"]
    finally:
        other.communicate("")
    assert other.returncode == 0, "closed at the end of the interpreter"
    with brenlox.open(path) as survey:
        assert survey.lines


def test_refuses_what_is_no_survey(path, tmp_path):
    with pytest.raises(FileNotFoundError, match="does not exist"):
        brenlox.open(tmp_path / "missing.mdb")
    (tmp_path / "empty.mdb").write_bytes(b"")
    (tmp_path / "text.mdb").write_text("no survey at all\n" * 100)
    with sqlite3.connect(tmp_path / "table.mdb") as connection:
        connection.execute("CREATE TABLE Anything (ID INTEGER)")
    connection.close()
    for name in ("empty.mdb", "text.mdb", "table.mdb", "."):
        with pytest.raises(brenlox.Error, match="An error occurred while opening|required form"):
            brenlox.open(tmp_path / name)
        with brenlox.open(path) as survey:
            assert survey.lines


def test_threads_wait_for_each_other_and_progress_may_stop(survey):
    faults = []

    def work():
        try:
            for _ in range(20):
                assert len(survey.curves("200E")) == 48
                curve = survey.curve("400E", 500, "ExHy")
                survey.mask(curve, slice(0, 1))
                survey.unmask(curve, slice(0, 1))
        except Exception as fault:
            faults.append(fault)

    threads = [threading.Thread(target=work) for _ in range(3)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not faults
    assert survey.curve("400E", 500, "ExHy").resistivity_counts.all()


@pytest.mark.skipif(not hasattr(os, "fork"), reason="has no fork")
def test_forked_process_leaves_the_survey_to_its_parent(survey):
    child = os.fork()
    if child == 0:
        try:
            survey.lines
            os._exit(1)
        except brenlox.Error as refused:
            survey.close()
            os._exit(0 if "another process" in str(refused) else 2)
    assert os.waitpid(child, 0)[1] == 0
    assert survey.lines == ["200E", "400E"]
    assert survey.mask(survey.curve("200E", 500, "ExHy"), slice(0, 1)) > 0


def test_tells_what_a_station_has(survey):
    assert survey.data_types("200e", 500) == ["ExHx", "ExHy", "EyHx", "EyHy"]
    assert survey.scan_rates("200E", 500) == [256.0, 4096.0]
    assert survey.scan_rates("200E", 500, "ExHy") == [256.0, 4096.0]
    assert survey.scan_rates("200E", 500, "HzHx") == []
    with pytest.raises(ValueError, match="no line '7E'"):
        survey.data_types("7E", 500)
    with pytest.raises(ValueError, match="no station 1"):
        survey.scan_rates("200E", 1)


def test_a_line_may_have_any_name(tmp_path):
    line = "O'Brien \"7\"; --"
    table = tmp_path / "curves.csv"
    rows = [f'"O\'Brien ""7""; --",100,{kind},{frequency},{50 + frequency},45'
            for kind in ("ExHx", "ExHy", "EyHx", "EyHy") for frequency in (1, 2, 4)]
    table.write_text("\n".join(["line,station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg", *rows]))
    with brenlox.create(tmp_path / "odd.mdb") as survey:
        survey.import_files(table)
        assert survey.lines == [line]
        assert survey.kinds(line) == [(0, 100.0)]
        curve = survey.curve(line.upper(), 100, "ExHy")
        assert curve.line == line
        assert len(survey.curves(line, 100)) == 4 and len(survey.tensor(line, 100)) == 3
        assert survey.mask(survey.curves(line, data_type="ExHy", reduction="raw"), slice(0, 1)) > 0
        survey.undo()
        assert survey.data_types(line, 100) == ["ExHx", "ExHy", "EyHx", "EyHy"]
        assert survey.export(tmp_path / "out", format="csv", lines=[line]).files

import os
import shutil
import sqlite3
import threading
import time

import brenlox
import pytest
from brenlox.importing import ImportPlan
from programs import batch, make_samples, needs_programs, same_files

pytestmark = needs_programs
COLUMNS = {"line_columns": (2, 4), "event_columns": (14, 1), "rate_columns": (17, 4)}


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    """A few files of the sample survey."""
    folder = tmp_path_factory.mktemp("field")
    make_samples(folder / "all")
    some = folder / "some"
    some.mkdir()
    for path in sorted((folder / "all").rglob("*.edi"))[:12]:
        shutil.copy(path, some)
    return some


@pytest.fixture(scope="module")
def tensor_files(tmp_path_factory):
    folder = tmp_path_factory.mktemp("tensor")
    make_samples(folder / "files", "--tensor-line")
    return folder / "files"


@pytest.fixture(scope="module")
def tensor_survey(tensor_files, tmp_path_factory):
    path = tmp_path_factory.mktemp("survey") / "line.mdb"
    with brenlox.create(path) as survey:
        survey.import_files(tensor_files)
    return path


def tables_of(path):
    """All rows of all tables, without the times of the import."""
    with sqlite3.connect(f"file:{path}?mode=ro", uri=True) as database:
        tables = [name for (name,) in database.execute("SELECT name FROM sqlite_master WHERE type = 'table'")]
        rows = {}
        for table in tables:
            columns = [column[1] for column in database.execute(f'PRAGMA table_info("{table}")')]
            kept = [f'"{name}"' for name in columns if not ("Date" in name and "Collected" not in name)]
            rows[table] = database.execute(f'SELECT {",".join(kept)} FROM "{table}"').fetchall()
    return rows


@pytest.mark.parametrize("options, words", [
    ({}, ["--auto"]),
    ({"line": "7E", "turn_ey": "always", "stations_by": "count", "start_station": 50, "station_step": 25},
     ["--auto", "--line", "7E", "--turn-ey=always", "--start-station", "50", "--station-step", "25"]),
])
def test_an_import_stores_what_the_program_stores(tensor_files, tmp_path, options, words):
    compare_imports(tensor_files, tmp_path, options, words)


def test_an_import_by_columns_of_file_names(files, tmp_path):
    compare_imports(files, tmp_path, {"auto": False, "reference_type": 0, "stations_by": "sectid", **COLUMNS},
                    ["--reference", "0", "--sectid-as-station", "--line-columns", "2,4", "--event-columns", "14,1",
                     "--rate-columns", "17,4"])


def compare_imports(files, folder, options, words):
    batch("new", folder / "batch.mdb")
    batch("import", folder / "batch.mdb", files, *words)
    with brenlox.create(folder / "python.mdb") as survey:
        plan = survey.import_files(files, dry_run=True, **options)
        assert isinstance(plan, ImportPlan) and plan.rows and survey.lines == []
        report = survey.import_files(files, **options)
    assert not report.failures and report.readings > 0 and not report.stopped
    assert {(row.line, row.station) for row in plan.rows} == set(report.stations)
    ours, theirs = tables_of(folder / "python.mdb"), tables_of(folder / "batch.mdb")
    assert ours.keys() == theirs.keys()
    for table, rows in theirs.items():
        assert ours[table] == rows, table


def test_a_broken_file_is_told_and_the_others_are_stored(files, tmp_path):
    broken = tmp_path / "broken.edi"
    broken.write_bytes(b">HEAD\n\x00\xff\n>END\n")
    good = sorted(files.iterdir())[0]
    with brenlox.create(tmp_path / "a.mdb") as survey:
        report = survey.import_files([broken, good])
        assert [file.path for file in report.failures] == [str(broken)] and report.failures[0].failure
        assert any("broken.edi" in problem for problem in report.problems)
        assert report.readings > 0 and len(survey.stations()) == 1
        again = survey.import_files(good)
        assert again.files[0].replaced_readings == report.readings


def test_what_can_not_be_imported_is_refused(files, tmp_path):
    empty = tmp_path / "empty"
    empty.mkdir()
    with brenlox.create(tmp_path / "a.mdb") as survey:
        with pytest.raises(brenlox.Error, match="There is no field file in"):
            survey.import_files(empty)
        with pytest.raises(FileNotFoundError):
            survey.import_files(tmp_path / "missing")
        with pytest.raises(ValueError, match="there are none"):
            survey.import_files([])
        with pytest.raises(ValueError, match="reference_type: is required without auto"):
            survey.import_files(files, auto=False, line="1E", event=1, rate=1)
        with pytest.raises(ValueError, match="turn_ey: expected one of"):
            survey.import_files(files, turn_ey="sometimes")
        with pytest.raises(ValueError, match="either line or line_columns"):
            survey.import_files(files, line="1E", line_columns=(1, 2))
        assert survey.lines == []
    with pytest.raises(brenlox.Error, match="The survey is closed"):
        survey.import_files(files)
    with pytest.raises(FileExistsError):
        brenlox.create(tmp_path / "a.mdb")
    with pytest.raises(ValueError, match="must end in .mdb"):
        brenlox.create(tmp_path / "a.db")
    with brenlox.open(tmp_path / "a.mdb", read_only=True) as survey:
        assert survey.import_files(files, dry_run=True).rows
        with pytest.raises(brenlox.Error):
            survey.import_files(files)


def test_progress_may_stop_an_import(tensor_files, tmp_path):
    shares = []

    def stop(share):
        shares.append(share)
        time.sleep(0.06)  # so that the next file asks again
        return len(shares) < 2

    def nested(share):
        shares.append(share)
        survey.recalculate()

    many = tmp_path / "many"
    for copy in range(4):  # so that there is time to ask: work is interrupted each twentieth of a second
        shutil.copytree(tensor_files, many / str(copy))
    with brenlox.create(tmp_path / "a.mdb") as survey:
        report = survey.import_files(many, progress=stop)
        assert len(shares) == 2 and report.stopped
        assert report.readings < 4 * 15 * 6
        with pytest.raises(brenlox.Error):
            survey.import_files(many, progress=nested)


def test_other_threads_wait_for_work_or_are_refused(tensor_survey, tmp_path):
    shutil.copy(tensor_survey, tmp_path / "line.mdb")
    with brenlox.open(tmp_path / "line.mdb") as survey:
        failures = []

        def recalculate():
            try:
                survey.recalculate()
            except brenlox.Error as failure:
                failures.append(failure)

        threads = [threading.Thread(target=recalculate) for _ in range(3)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        assert len(failures) < 3
        assert len(survey.curve("100E", survey.stations()[0], "ExHy").frequency) > 0


@pytest.mark.parametrize("options, words", [
    ({"format": "edi"}, []),
    ({"format": "emtfxml", "rotate": 30.0}, ["--rotate", "30"]),
    ({"format": "csv", "lines": "100e"}, ["--line", "100E"]),
    ({"format": "csv", "reduction": 0}, ["--reduction", "0"]),
    ({"format": "geojson", "plot_link": "x/{line}_{station}"}, ["--plot-link", "x/{line}_{station}"]),
    ({"format": "kml"}, []),
])
def test_exported_files_are_those_of_the_program(tensor_survey, tmp_path, options, words):
    batch("export", tensor_survey, "--format", options["format"], "--directory", tmp_path / "batch", *words)
    with brenlox.open(tensor_survey, read_only=True) as survey:
        report = survey.export(tmp_path / "python", **options)
    assert sorted(report.files) == sorted(str(path) for path in (tmp_path / "python").iterdir())
    same_files(tmp_path / "python", tmp_path / "batch")


def test_sets_of_a_line_are_those_of_the_program(tensor_survey, tmp_path):
    kind = ["--line", "100E", "--data-type", "ExHy"]
    with brenlox.open(tensor_survey, read_only=True) as survey:
        reference_type, dipole = survey.kinds("100E")[0]
        kind += ["--reference", reference_type, "--dipole", dipole]
        for folder in ("batch", "python"):
            (tmp_path / folder).mkdir()
        written = survey.write_zonge(tmp_path / "python" / "set", "100E", "ExHy")
        assert written.rows > 0 and os.path.exists(written.stn)
        settings = brenlox.RhoplusSettings(resistivity_floor=7, surface="conducting")
        controls = survey.write_rhoplus(tmp_path / "python" / "rho", "100E", "ExHy", settings=settings, root="r")
        with pytest.raises(brenlox.Error, match="set.avg"):
            survey.write_zonge(tmp_path / "python" / "set", "100E", "ExHy")
        with pytest.raises(ValueError, match="data_type"):
            survey.write_zonge(tmp_path / "python" / "set", "100E", "exhy")
        with pytest.raises(brenlox.Error):
            survey.write_zonge(tmp_path / "python" / "qp", "100E", "QP")
    batch("zonge", tensor_survey, *kind, "--output", tmp_path / "batch" / "set")
    batch("rhoplus", tensor_survey, *kind, "--directory", tmp_path / "batch" / "rho", "--root", "r", "--floor", "7",
          "--surface", "0")
    assert controls.stations == len(list((tmp_path / "python" / "rho").iterdir())) - 1
    same_files(tmp_path / "python", tmp_path / "batch")
    same_files(tmp_path / "python" / "rho", tmp_path / "batch" / "rho")


def test_an_export_replaces_nothing_unasked(tensor_survey, tmp_path):
    with brenlox.open(tensor_survey, read_only=True) as survey:
        first = survey.export(tmp_path, format="kml")
        before = open(first.files[0], "rb").read()
        with open(first.files[0], "ab") as file:
            file.write(b"<!-- mine -->")
        with pytest.raises(brenlox.Error):
            survey.export(tmp_path, format="kml")
        assert open(first.files[0], "rb").read() == before + b"<!-- mine -->"
        survey.export(tmp_path, format="kml", overwrite=True)
        assert open(first.files[0], "rb").read() == before
        with pytest.raises(brenlox.Error, match="has no line 9E; it has 100E"):
            survey.export(tmp_path, format="csv", lines=["9E"])
        with pytest.raises(ValueError, match="Raw and averaged curves are written to CSV only"):
            survey.export(tmp_path, format="edi", reduction=0)
        with pytest.raises(ValueError, match="format"):
            survey.export(tmp_path, format="zip")
        file = tmp_path / "file"
        file.write_text("")
        with pytest.raises(brenlox.Error):
            survey.export(file / "below", format="csv")

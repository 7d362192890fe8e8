import os
import shutil
import signal
import threading

import brenlox
import numpy as np
import pytest
from brenlox import occam, section
from programs import batch, make_samples, needs_programs, same_files

pytestmark = needs_programs
SMALL = {"block_width": 400, "layers": 12, "layers_per_decade": 4, "top_layer": 40}
SMALL_WORDS = ["--block-width", "400", "--layers", "12", "--layers-per-decade", "4", "--top-layer", "40"]


@pytest.fixture(scope="module")
def survey_path(tmp_path_factory):
    folder = tmp_path_factory.mktemp("line")
    make_samples(folder / "files", "--tensor-line")
    with brenlox.create(folder / "line.mdb") as survey:
        survey.import_files(folder / "files")
    return folder / "line.mdb"


@pytest.fixture(scope="module")
def made(survey_path, tmp_path_factory):
    """A small run of both modes, not inverted."""
    folder = tmp_path_factory.mktemp("run")
    with brenlox.open(survey_path, read_only=True) as survey:
        survey.create_run(folder / "run", "100E", **SMALL)
    return folder / "run"


@pytest.fixture(scope="module")
def inverted(made, tmp_path_factory):
    folder = tmp_path_factory.mktemp("inverted") / "run"
    shutil.copytree(made, folder)
    occam.Run(folder).invert(iterations=2)
    return folder


@pytest.fixture
def run_folder(made, tmp_path):
    shutil.copytree(made, tmp_path / "run")
    return tmp_path / "run"


def test_a_run_is_made_as_the_program_makes_it(survey_path, tmp_path):
    with brenlox.open(survey_path, read_only=True) as survey:
        reference_type, dipole = survey.kinds("100E")[0]
        run = survey.create_run(tmp_path / "python" / "run", "100E", resistivity_floor=8, phase_floor=2.5,
                                target_rms=1.5, **SMALL)
        one_mode = survey.create_run(tmp_path / "tm", "100E", data_type="ExHy", by_distance=True, **SMALL)
        with pytest.raises(brenlox.Error, match="Replace the inversion in"):
            survey.create_run(tmp_path / "tm", "100E", **SMALL)
        replaced = survey.create_run(tmp_path / "tm", "100E", overwrite=True, **SMALL)
        with pytest.raises(brenlox.Error):
            survey.create_run(tmp_path / "bad", "100E", layers=-3)
        with pytest.raises(ValueError, match="no line .9E."):
            survey.create_run(tmp_path / "bad", "9E")
        with pytest.raises(TypeError):
            survey.create_run(tmp_path / "bad", "100E", layer=3)
    batch("occam", survey_path, "--line", "100E", "--reference", reference_type, "--dipole", dipole, "--modes", "both",
          "--directory", tmp_path / "batch" / "run", "--res-floor", "8", "--phase-floor", "2.5", "--rms", "1.5",
          *SMALL_WORDS)
    same_files(tmp_path / "python" / "run", tmp_path / "batch" / "run")
    assert set(run.data.mode) == {"TE", "TM"} and set(one_mode.data.mode) == {"TM"}
    assert set(run.data.quantity) == {"log10_resistivity", "phase"}
    assert set(replaced.data.mode) == {"TE", "TM"} and (tmp_path / "tm" / "earlier_1").is_dir()
    assert any(str(len(run.data)) in text for text in run.created)
    assert not (tmp_path / "bad").exists() or not os.listdir(tmp_path / "bad")


def test_an_inversion_leaves_what_the_program_leaves(run_folder, tmp_path):
    shutil.copytree(run_folder, tmp_path / "batch")
    steps = []
    report = occam.Run(run_folder).invert(iterations=2, static_shift=0.3, progress=steps.append)
    batch("inversion", tmp_path / "batch", "--iterations", "2", "--static-shift", "0.3")
    same_files(run_folder, tmp_path / "batch")
    assert report.ending == "iterations_done" and report.steps == steps and len(steps) == 3
    run = occam.Run(run_folder)
    assert [iteration.number for iteration in run.iterations] == [0, 1, 2]
    assert run.iterations[2].rms == pytest.approx(steps[2].rms, rel=1e-5)
    assert str(steps[1]).startswith("iteration  1: RMS")
    assert len(run.model().static_shifts) > 0
    with pytest.raises(brenlox.Error, match="overwrite=True"):
        run.invert(iterations=1)
    assert run.invert(iterations=1, go_on=True).steps[-1].iteration == 3
    assert run.invert(iterations=1, overwrite=True).earlier_folder == "earlier_1"


def test_stopping_keeps_iterations(run_folder):
    run = occam.Run(run_folder)
    report = run.invert(progress=lambda step: step.iteration < 1)
    assert report.ending == "stopped" and [step.iteration for step in report.steps] == [0, 1]

    def fail(step):
        raise RuntimeError("of the caller's own")

    with pytest.raises(RuntimeError, match="of the caller's own"):
        run.invert(go_on=True, progress=fail)
    timer = threading.Timer(0.1, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    try:
        with pytest.raises(KeyboardInterrupt):
            for _ in range(100):
                run.invert(overwrite=True)
    finally:
        timer.cancel()
    assert all((run_folder / iteration.file).exists() for iteration in run.iterations)


def test_the_response_is_that_of_the_program(inverted, tmp_path):
    run = occam.Run(inverted)
    batch("response", inverted, "--iteration", "2", "--output", tmp_path)
    rows = [line.split() for line in next(tmp_path.glob("*.resp")).read_text().splitlines()]
    written = np.array([row for row in rows[rows.index(["SITE,FREQUENCY,DATATYPE,DATUM,RESIDUAL,MODELLED,MISFIT"]) + 1:]],
                       dtype=float)
    computed = run.response(2, compute=True)
    np.testing.assert_array_equal(computed.site + 1, written[:, 0])
    np.testing.assert_array_equal(computed.frequency + 1, written[:, 1])
    np.testing.assert_array_equal(computed.type, written[:, 2])
    for column, values in zip((3, 4, 5), (computed.datum, computed.residual, computed.modelled)):
        np.testing.assert_allclose(values, written[:, column], atol=6e-7)
    left = run.response(2)  # that of the inversion
    np.testing.assert_allclose(left.modelled, computed.modelled, atol=6e-4)
    assert computed.rms == pytest.approx(run.iterations[2].rms, rel=1e-3)
    assert run.misfit(2).keys() == set(run.site_names)
    np.testing.assert_allclose(computed.error * computed.misfit, computed.residual, atol=1e-9)
    shares = []

    def stop(share):
        shares.append(share)
        return False

    # What is done within a twentieth of a second asks nobody.
    assert (run.response(2, compute=True, progress=stop) is None) == bool(shares)


def test_the_section_of_a_model_has_its_response(inverted):
    run = occam.Run(inverted)
    model, computed = run.model(2), run.response(2, compute=True)
    response = section.response(model.section(), run.site_offsets, run.frequencies)
    for mode, of_mode in (("TE", response.te), ("TM", response.tm)):
        for quantity in ("log10_resistivity", "phase"):
            rows = (computed.mode == mode) & (computed.quantity == quantity)
            ours = getattr(of_mode, quantity)[computed.site[rows], computed.frequency[rows]]
            difference = ours - computed.modelled[rows]
            if quantity == "phase":
                difference -= 360.0 * np.round(difference / 360.0)
            np.testing.assert_allclose(difference, 0.0, atol=1e-9)


def test_models_have_blocks_and_mesh(inverted):
    run = occam.Run(inverted)
    model = run.model()
    assert model.iteration.number == 2 and model.rms == run.iterations[2].rms
    assert model.resistivity.shape == (len(model.node_z) - 1, len(model.node_x) - 1, 4)
    free = model.blocks.parameter >= 0
    np.testing.assert_array_equal(model.blocks.log10_resistivity[free], model.parameters[model.blocks.parameter[free]])
    for block in np.flatnonzero(free)[::17]:
        row = np.searchsorted(model.node_z, model.blocks.top[block])
        column = np.searchsorted(model.node_x, model.blocks.left[block])
        np.testing.assert_allclose(np.log10(model.resistivity[row, column]), model.blocks.log10_resistivity[block])
    assert np.ptp(run.model(0).parameters) == 0.0


def test_runs_are_read_by_threads_at_once(inverted):
    expected = occam.Run(inverted).model(1).parameters
    failures = []

    def work():
        try:
            for _ in range(5):
                np.testing.assert_array_equal(occam.Run(inverted).model(1).parameters, expected)
        except Exception as failure:
            failures.append(failure)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failures


def test_what_is_no_run_is_refused(inverted, tmp_path):
    with pytest.raises(FileNotFoundError):
        occam.Run(tmp_path / "missing")
    (tmp_path / "empty").mkdir()
    with pytest.raises(brenlox.Error, match="There is no start file and no iteration file"):
        occam.Run(tmp_path / "empty")
    run = occam.Run(inverted)
    with pytest.raises(brenlox.Error, match="There is no file of iteration 7"):
        run.model(7)
    with pytest.raises(ValueError, match="roughness_type"):
        run.invert(roughness_type=2)
    with pytest.raises(ValueError, match="site"):
        run.site_index("nowhere")

    cut = tmp_path / "cut"
    shutil.copytree(inverted, cut)
    iteration = cut / run.iterations[2].file
    iteration.write_bytes(iteration.read_bytes()[:700])
    with pytest.raises(brenlox.Error):
        occam.Run(cut).model(2)
    assert occam.Run(cut).model(1).iteration.number == 1
    (cut / "occamdat").write_text("")
    with pytest.raises(brenlox.Error, match="occamdat can't be read as a data file"):
        occam.Run(cut)


def test_a_run_that_is_being_inverted_is_refused(run_folder):
    run = occam.Run(run_folder)

    def again(step):
        with pytest.raises(brenlox.Error, match="Another inversion is running in"):
            occam.Run(run_folder).invert(overwrite=True)
        return False

    assert run.invert(progress=again).ending == "stopped"


@pytest.mark.skipif(os.geteuid() == 0, reason="the administrator may write everywhere")
def test_a_folder_that_can_not_be_written_stays_as_it_is(run_folder):
    run = occam.Run(run_folder)
    run_folder.chmod(0o555)
    try:
        with pytest.raises(brenlox.Error):
            run.invert(iterations=1)
    finally:
        run_folder.chmod(0o755)


def test_plots_show_section_sites_and_curves(inverted, tmp_path):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    import matplotlib.pyplot as pyplot

    run = occam.Run(inverted)
    axes = run.model().plot(mesh=True)
    bottom, top = axes.get_ylim()
    assert bottom > top == 0.0
    assert "resistivity" in axes.figure.axes[1].get_ylabel()
    drawn = {text.get_text() for text in axes.texts}
    assert drawn == set(run.site_names)
    pair = run.response().plot(run.site_names[0])
    assert pair[0].get_yscale() == "log" and len(pair[0].lines) >= 4
    axes.figure.savefig(tmp_path / "model.png")
    assert (tmp_path / "model.png").stat().st_size > 10000
    pyplot.close("all")

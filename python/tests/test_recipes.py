"""The recipes of the manual give what the manual says."""

import shutil

import brenlox
import pytest
from programs import make_samples, needs_programs
from recipes import PAGE, recipes


@pytest.fixture(scope="module")
def samples(made_survey, tmp_path_factory):
    """What the readers of the page have."""
    folder = tmp_path_factory.mktemp("samples")
    shutil.copy(made_survey, folder / "survey.mdb")
    shutil.copytree(made_survey.parent / "files", folder / "field_files")
    make_samples(folder.parent / "tensor_files", "--tensor-line")
    with brenlox.create(folder / "tensors.mdb") as survey:
        survey.import_files(folder.parent / "tensor_files")
    (folder / "tensors.bak").unlink(missing_ok=True)
    return folder


@needs_programs
@pytest.mark.parametrize("recipe", recipes(), ids=lambda recipe: recipe.title.replace(" ", "_"))
def test_recipe_prints_and_draws_what_the_page_shows(recipe, samples, tmp_path, monkeypatch):
    matplotlib = pytest.importorskip("matplotlib")
    image = pytest.importorskip("matplotlib.image")
    pytest.importorskip("pandas")
    matplotlib.use("Agg")
    assert recipe.run(samples, tmp_path) == recipe.output
    for picture in recipe.pictures:
        drawn = image.imread(tmp_path / picture)
        assert len({tuple(point) for row in drawn[::10] for point in row}) > 10, "nothing is drawn"
        assert (PAGE.parent / "screenshots" / f"python_{picture}").exists()


def test_page_has_ten_recipes():
    assert len(recipes()) >= 10

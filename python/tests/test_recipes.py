"""The recipes of the manual give what the manual says."""

import pytest

from recipes import PAGE, recipes


@pytest.mark.parametrize("recipe", recipes(), ids=lambda recipe: recipe.title.replace(" ", "_"))
def test_recipe_prints_and_draws_what_the_page_shows(recipe, samples, tmp_path, monkeypatch):
    matplotlib = pytest.importorskip("matplotlib")
    pytest.importorskip("pandas")
    monkeypatch.setenv("MPLBACKEND", "Agg")
    matplotlib.use("Agg")
    assert recipe.run(samples, tmp_path) == recipe.output
    for picture in recipe.pictures:
        image = matplotlib.image.imread(tmp_path / picture)
        assert len({tuple(point) for row in image[::10] for point in row}) > 10, "nothing is drawn"
        assert (PAGE.parent / "screenshots" / f"python_{picture}").exists()


def test_page_has_the_recipes():
    assert len(recipes()) >= 10

"""The stub says what the compiled module has, and everything public is documented and annotated."""

import ast
import importlib
import inspect
import pkgutil
import re
from pathlib import Path

import brenlox
import pytest
from brenlox import _brenlox

PACKAGE = Path(brenlox.__file__).parent
INTERNAL = ("_arrays", "_brenlox")
STUB = ast.parse((PACKAGE / "_brenlox.pyi").read_text("utf-8"))


def stubbed(body, owner=""):
    """Names of parameters by qualified name of functions, and methods of classes; None of a class."""
    found = {}
    for node in body:
        if isinstance(node, ast.FunctionDef):
            found[owner + node.name] = [each.arg for each in node.args.args]
        elif isinstance(node, ast.ClassDef):
            found[owner + node.name] = None
            found.update(stubbed(node.body, f"{owner}{node.name}."))
    return found


def signature_of(function):
    """Names of parameters, from the first line that the compiled module gives of itself."""
    inside = re.match(r"\w+\((.*)\) -> ", function.__doc__)[1]
    return re.findall(r"(?:^|, )(\w+): ", inside)


def compiled():
    found = {}
    for name, member in vars(_brenlox).items():
        if inspect.isclass(member):
            found[name] = None
            for of_class, method in vars(member).items():
                if callable(method) and (of_class == "__init__" or not of_class.startswith("_")):
                    if method.__doc__ and "->" in method.__doc__:
                        found[f"{name}.{of_class}"] = signature_of(method)
        elif callable(member):
            found[name] = signature_of(member)
    return found


def test_stub_has_what_the_compiled_module_has():
    assert stubbed(STUB.body) == compiled()


def public_members():
    names = [each.name for each in pkgutil.iter_modules([str(PACKAGE)])]
    for module in [brenlox] + [importlib.import_module(f"brenlox.{name}") for name in names if name not in INTERNAL]:
        for name, member in vars(module).items():
            if name.startswith("_") or getattr(member, "__module__", None) != module.__name__:
                continue
            yield f"{module.__name__}.{name}", member
            if inspect.isclass(member):
                for of_class, method in vars(member).items():
                    if isinstance(method, (classmethod, staticmethod)):
                        method = method.__func__
                    if isinstance(method, property):
                        method = method.fget
                    generated = not hasattr(method, "__code__") or "namedtuple" in method.__code__.co_filename \
                        or method.__code__.co_filename == "<string>"
                    if inspect.isfunction(method) and not of_class.startswith("_") and not generated:
                        yield f"{module.__name__}.{name}.{of_class}", method


MEMBERS = dict(public_members())


@pytest.mark.parametrize("name", MEMBERS)
def test_public_members_are_documented_and_annotated(name):
    member = MEMBERS[name]
    assert inspect.getdoc(member), "no docstring"
    if inspect.isfunction(member):
        signature = inspect.signature(member)
        assert signature.return_annotation is not inspect.Signature.empty, "nothing says what it returns"
        unnamed = [each.name for each in signature.parameters.values()
                   if each.annotation is each.empty and each.name not in ("self", "cls")
                   and each.kind is not each.VAR_KEYWORD]
        assert not unnamed, f"without annotation: {unnamed}"


def test_documented_parameters_are_those_of_the_functions():
    for name, member in MEMBERS.items():
        if not inspect.isfunction(member) or "Parameters\n----------" not in (inspect.getdoc(member) or ""):
            continue
        section = re.split(r"\n\w+\n-+\n", inspect.getdoc(member).split("Parameters\n----------\n")[1])[0]
        documented = {part.strip("* ") for line in re.findall(r"^(?! )(.+?)(?: :.*)?$", section, re.M)
                      for part in line.split(",")}
        parameters = set(inspect.signature(member).parameters)
        assert documented <= parameters, f"{name} documents {documented - parameters}"


def test_all_is_what_is_there():
    assert sorted(brenlox.__all__) == brenlox.__all__
    for name in brenlox.__all__:
        assert getattr(brenlox, name) is not None

"""What docstrings and the guide show is run, and the annotations hold."""
import doctest
import importlib
import pkgutil
import re
import subprocess
import sys
from pathlib import Path

import ot95
import pytest

ROOT = Path(__file__).resolve().parents[3]
GUIDE = ROOT / "docs" / "python.md"


def modules():
    return ["ot95"] + [f"ot95.{module.name}" for module in pkgutil.iter_modules(ot95.__path__)]


def test_docstrings(names):
    tried = 0
    for name in modules():
        failed, attempted = doctest.testmod(importlib.import_module(name), extraglobs=names)
        assert failed == 0, name
        tried += attempted
    assert tried > 35


def test_everything_public_is_described():
    for name in ot95.__all__:
        thing = getattr(ot95, name)
        if callable(thing):
            assert (thing.__doc__ or "").strip(), name
            for member, value in vars(thing).items() if isinstance(thing, type) else []:
                if not member.startswith("_") and callable(value):
                    assert (value.__doc__ or "").strip(), f"{name}.{member}"


def blocks(language):
    text = GUIDE.read_text(encoding="utf-8")
    return re.findall(rf"^```{language}\n(.*?)^```$", text, re.M | re.S)


def test_the_guide(tmp_path, monkeypatch):
    """Sessions say what they show; programs run one behind another, as a reader runs them."""
    monkeypatch.chdir(tmp_path)
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
    shared = {}
    for block in blocks("pycon"):
        session = doctest.DocTestParser().get_doctest(block, shared, GUIDE.name, None, 0)
        runner.run(session, clear_globs=False)
        shared.update(session.globs)
    assert runner.failures == 0 and runner.tries > 15
    programs = blocks("python")
    said = [subprocess.run([sys.executable, "-c", program], check=True, stdout=subprocess.PIPE,
                           text=True).stdout for program in programs]
    assert [text for text in said if text] == blocks("text")
    migration = next(program for program in programs if "sqlite3" in program)
    assert len(migration.strip().splitlines()) <= 20


def test_annotations():
    pytest.importorskip("mypy")
    done = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir=/dev/null",
                           ot95.__path__[0]], capture_output=True, text=True)
    assert done.returncode == 0, done.stdout

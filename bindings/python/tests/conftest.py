"""What examples in docstrings know without saying so."""
import pickle
from datetime import date

import ot95
import pytest


@pytest.fixture(scope="session")
def names():
    return {"ot95": ot95, "pickle": pickle, "date": date}

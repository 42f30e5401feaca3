import os
import pathlib
import subprocess
import sys

import pytest

from conftest import EXAMPLES

BUILD = os.environ.get("ZEPHRA_BUILD_DIR")
SITE = os.environ.get("ZEPHRA_PYTHON_INSTALL_DIR")


@pytest.mark.skipif(not BUILD, reason="needs the build folder (run by CTest)")
def test_the_installed_package_imports_with_its_backend(tmp_path):
    prefix = tmp_path / "prefix"
    subprocess.run([os.environ["ZEPHRA_CMAKE"], "--install", BUILD, "--prefix", prefix],
                   check=True, capture_output=True)
    # Nothing but the installed tree: no build folder, no library path.
    environment = {"PATH": os.environ["PATH"], "PYTHONPATH": str(prefix / SITE)}
    check = ("import xarray, zephra; "
             "cells = xarray.open_dataarray(r'%s', engine='zephra'); "
             "print(zephra.__file__, cells.shape)" % (EXAMPLES / "elevation.doc"))
    run = subprocess.run([sys.executable, "-c", check], env=environment, cwd=tmp_path,
                         check=True, capture_output=True, text=True)
    location, shape = run.stdout.split(" ", 1)
    assert pathlib.Path(location).is_relative_to(prefix) and shape.strip() == "(30, 40)"

"""Every operation, in threads with the smallest stack that the documents promise."""

import os

import pytest
from conftest import BUILD, VMETER, run

pytestmark = pytest.mark.usefixtures("namespaces")

SCENE = """
clock_ms = 1000
power = { reboot_ms = 0 }
"""


def test_every_operation(tmp_path):
    scene = tmp_path / "scene.toml"
    scene.write_text(SCENE)
    ended = run(VMETER, "run", "--scene", scene, "--", BUILD / "bin" / "stack_test", "--gtest_brief=1",
                env={**os.environ, "LSYS_DEBUG": "1"})  # what fails is told as well
    assert ended.returncode == 0, ended.stdout + ended.stderr

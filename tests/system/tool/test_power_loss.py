"""What is told as done is on the disk: whatever was done to files and folders is flushed. tests/campaign/power.py takes
the power away at every moment."""

import json
import os
from pathlib import Path

import pytest

from tool_support import BUILD, VX63, meter, run  # noqa: F401 (fixture)

AT_CALL = BUILD / "bin" / "at_call"
PLAN = """site = "House"
[[list]]
name = "tv"
system = "terrestrial"
frequencies = ["557143"]
[[point]]
name = "A"
"""


@pytest.fixture
def writes(meter, native):  # noqa: F811
    """What a command does to files, in its order."""
    def record(*words, path=os.environ["PATH"]):
        told = meter.folder / "told"
        result = run(*meter.command("/usr/bin/env", "ASAN_OPTIONS=detect_leaks=0", f"PATH={path}", AT_CALL, "-o", told,
                                    "writes", VX63, *words))
        assert told.exists(), result
        told = json.loads(told.read_text())
        assert told["status"] in (0, 1, 14), result
        return told["writes"]
    return record


def folders(writes):
    """Folders that were made, and whether the one around each was flushed after it."""
    return {Path(one["path"]).name: any(later["what"] == "fsync" and Path(later["path"]) == Path(one["path"]).parent
                                        for later in writes[i:])
            for i, one in enumerate(writes) if one["what"] == "mkdir"}


def test_deleted_files_do_not_come_back(meter, writes):
    done = [one["what"] for one in writes("settings", "reset", "--all", "--delete", "--yes")
            if one["what"] == "sync" or one["path"].startswith("/usr/local/bin/")]
    assert "unlink" in done
    assert done[-1] == "sync"


def test_an_exported_folder_stays(meter, writes):
    made = folders(writes("settings", "export", meter.folder / "of" / "backup"))
    assert {"of", "backup"} <= made.keys()
    assert all(made.values()), made


def test_the_folder_of_a_survey_stays(meter, writes):
    (meter.folder / "plan.toml").write_text(PLAN)
    made = folders(writes("survey", meter.folder / "plan.toml", "--out", meter.folder / "of" / "house", "--yes",
                          path="/nowhere"))  # without what prints report.pdf
    assert made == {"of": True, "house": True}

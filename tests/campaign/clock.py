#!/usr/bin/python3
"""The sessions of model.py while the wall clock is set back and forth by up to a year, in every process, all the time.

clock.py SECONDS SEED. Nothing that waits or counts may go by the wall clock; the log alone shows it.
"""

import os

import model
from conftest import BUILD  # where model has found it

if __name__ == "__main__":
    os.environ["LD_PRELOAD"] = str(BUILD / "lib" / "libstepping_clock.so")
    model.main()

"""What a call takes on the meter's processor, estimated from the instructions counted on another one. All that is
assumed stands here; docs/performance.md gives the reasons."""

import re

INSTRUCTIONS_A_MICROSECOND = 800 * 0.8  # MHz, instructions a cycle
SPREAD = 0.3                            # of the count and of the speed together
CALL_MICROSECONDS = (1, 4)              # a system call
LINE_CALLS = 5                          # stat, open, clock_gettime, write, close
EXCHANGE_CALLS = 7                      # as on a PC, and the clock twice

HEADS = ["Operation", "Instructions", "These, µs", "System calls", "These, µs", "Together, µs"]


def system_calls(case):
    """Of a case of bench/instructions, by its name."""
    lines = re.search(r"(\d+) lines?$", case)
    exchanges = re.search(r", \d+ (bytes|points)", case)
    getpid = case.startswith("vx63_init")
    return (int(lines[1]) if lines else 0) * LINE_CALLS + (EXCHANGE_CALLS if exchanges else 0) + int(getpid)


def rows(counts):
    """Of the operations; settings files the meter's own platform reads and writes."""
    for case, count in sorted(counts.items()):
        if case.startswith("lsys_"):
            continue
        typical = count / INSTRUCTIONS_A_MICROSECOND
        calls = system_calls(case)
        low, high = (calls * each for each in CALL_MICROSECONDS)
        yield [case, f"{count:,}", rounded(typical), f"{calls}", f"{rounded(low)} to {rounded(high)}",
               f"{rounded(typical * (1 - SPREAD) + low)} to {rounded(typical * (1 + SPREAD) + high)}"]


def rounded(value):
    """To two digits: more would promise what an estimate cannot hold."""
    return f"{float(f'{value:.2g}'):,g}"

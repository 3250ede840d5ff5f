"""What is known of a list of channels, and of the messages that measure one."""

import json

UHF = ["16", "21", "22", "23", "24", "25", "26", "27", "28", "30"]  # of the default scene
WEAK = "30"  # does not lock


def channels(result):
    assert (result.returncode, result.stderr) == (0, "")
    return [json.loads(line) for line in result.stdout.splitlines()]


def parts(meter):
    """Kind, first index and count of each part of a registration, and the stops."""
    bodies = [bytes.fromhex(message["body"]) for message in meter.messages()
              if message["kind"] == "request" and message["usCmd"] == 0x109]
    return [(body[4], body[8], body[10]) for body in bodies]

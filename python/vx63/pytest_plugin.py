"""The fixture `virtual_meter` for pytest. Where the module is installed pytest knows it; in a source tree name it in
a conftest.py: pytest_plugins = ["vx63.pytest_plugin"]."""

from __future__ import annotations

from collections.abc import Iterator

import pytest

from . import VirtualMeter


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "virtual_meter(**options): options of vx63.VirtualMeter for the fixture "
                                       "virtual_meter")


@pytest.fixture
def virtual_meter(request: pytest.FixtureRequest) -> Iterator[VirtualMeter]:
    """A virtual meter of the test's own. @pytest.mark.virtual_meter(faults=[...]) gives it options."""
    marker = request.node.get_closest_marker("virtual_meter")
    with VirtualMeter(**(marker.kwargs if marker else {})) as meter:
        yield meter

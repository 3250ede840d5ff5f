"""Many meters at once, as far as the kernel lets one user have queues: nobody else of that user may have any."""

import os

import pytest
from conftest import AS_NOBODY, MEAS, Client

pytestmark = pytest.mark.usefixtures("namespaces")

GET_STATUS = 0x17


def test_sixteen_unprivileged_meters_side_by_side(public_bin):
    """Each has five services and two clients, all below the kernel's limit for one user's queues."""
    start = ["prlimit", "--msgqueue=819200:819200", *(AS_NOBODY if os.getuid() == 0 else []),
             public_bin / "vx63-vmeter", "run", "--"]
    clients = [Client(*start, program=public_bin / "vmeter_exchange") for _ in range(16)]
    try:
        for number, client in enumerate(clients):
            for own in (16, 17):
                client.own = own
                for _ in range(number + 1):
                    assert client.call(MEAS, GET_STATUS).option == 0
        for client in clients:
            assert client.receive(0) is None
        statuses = [client.close() for client in clients]
        assert statuses == [0] * 16
    finally:
        for client in clients:
            client.close()

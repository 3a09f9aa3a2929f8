#!/usr/bin/python3
"""A native tunnel of the real service beside socat, between the same two ends in the same run: throughput of 1 stream
and of 100, time added to a round trip, and memory of the process for each open connection.

    Benchmarks/Process/tunnel.py build/release/bin/veranox [--briefly]

Exit status 0: every bound is met; 1: some is not, unless --briefly, which takes too little time to judge.
"""

import json
import multiprocessing
import os
import resource
import socket
import statistics
import subprocess
import sys
import tempfile
import time

SECONDS, ROUNDS = 1.2, 5
BRIEFLY = 0.1, 1
CONNECTIONS = 400
FLOOR = 0.9
MEMORY_LIMIT_KIB = 64


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def await_listener(port):
    for _ in range(400):
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) == 0:
                return
        time.sleep(0.05)
    raise SystemExit(f"nobody listens at port {port}")


def serve_sink(listener):
    """Swallows whatever all connections send; what begins with "?" is answered byte by byte."""
    import selectors
    selector = selectors.DefaultSelector()
    listener.setblocking(False)
    selector.register(listener, selectors.EVENT_READ)
    buffer = bytearray(1 << 20)
    while True:
        for key, _ in selector.select():
            if key.fileobj is listener:
                connection, _ = listener.accept()
                connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
                connection.setblocking(False)
                selector.register(connection, selectors.EVENT_READ)
                continue
            try:
                count = key.fileobj.recv_into(buffer)
            except OSError:
                count = 0
            if count == 0:
                selector.unregister(key.fileobj)
                key.fileobj.close()
            elif count == 1 and buffer[0] == ord("?"):
                key.fileobj.send(b"!")


def send_for(port, streams, seconds):
    """Bytes a second that all streams together got rid of."""
    import selectors
    selector = selectors.DefaultSelector()
    for _ in range(streams):
        connection = socket.create_connection(("127.0.0.1", port))
        connection.setblocking(False)
        selector.register(connection, selectors.EVENT_WRITE)
    block = bytes(256 * 1024)
    sent = 0
    begin = time.perf_counter()
    while time.perf_counter() - begin < seconds:
        for key, _ in selector.select(0.1):
            sent += key.fileobj.send(block)
    took = time.perf_counter() - begin
    for key in list(selector.get_map().values()):
        key.fileobj.close()
    return sent / took


def round_trips(ports, rounds):
    """Median time for each port, measured by turns so that all meet the same load of the computer."""
    results = {port: [] for port in ports}
    for _ in range(rounds):
        for port in ports:
            results[port].append(round_trip(port))
    return [statistics.median(results[port]) for port in ports]


def round_trip(port, count=1000):
    with socket.create_connection(("127.0.0.1", port)) as connection:
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        times = []
        for _ in range(count):
            begin = time.perf_counter()
            connection.send(b"?")
            connection.recv(1)
            times.append(time.perf_counter() - begin)
    return statistics.median(times)


def memory_kib(process):
    with open(f"/proc/{process}/status") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))


def memory_per_connection(process, port):
    """Beyond the sockets' buffers: what the process itself grows by, first idle, then with stuck receivers."""
    before = memory_kib(process)
    connections = [socket.create_connection(("127.0.0.1", port)) for _ in range(CONNECTIONS)]
    for connection in connections:
        connection.sendall(b"hello")
    time.sleep(0.5)
    grown = memory_kib(process) - before
    for connection in connections:
        connection.close()
    return grown / CONNECTIONS


def start_service(program, folder, listen, target):
    network = {
        "version": 1,
        "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"sink": f"127.0.0.1:{target}"}}},
        "profiles": {"p": {"tailnet": "net", "config": {}}},
        "tunnels": {"t": {"config": {
            "Profile": "p", "Target": "sink.tail1.ts.net:9", "Listen": f"127.0.0.1:{listen}"}}}}
    file = os.path.join(folder, "lab.json")
    with open(file, "w") as lab:
        json.dump(network, lab)
    return subprocess.Popen(
        [program, "gui", "serve", "--listen", "127.0.0.1:0", "--lab", file, "--log-level", "error"],
        env={"HOME": folder, "PATH": os.environ["PATH"]}, stdout=subprocess.DEVNULL)


def compare(ours, floor, streams, seconds, rounds):
    """Median throughputs, measured by turns so that both meet the same load of the computer."""
    results = {"tunnel": [], "socat": []}
    for _ in range(rounds):
        results["socat"].append(send_for(floor, streams, seconds))
        results["tunnel"].append(send_for(ours, streams, seconds))
    return {name: statistics.median(values) for name, values in results.items()}


def main(program, is_brief):
    seconds, rounds = BRIEFLY if is_brief else (SECONDS, ROUNDS)
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    sink = socket.create_server(("127.0.0.1", 0), backlog=1024)
    target = sink.getsockname()[1]
    server = multiprocessing.Process(target=serve_sink, args=(sink,), daemon=True)
    server.start()
    listen, floor_port = free_port(), free_port()
    is_good = True
    with tempfile.TemporaryDirectory() as folder:
        service = start_service(program, folder, listen, target)
        floor = subprocess.Popen(
            ["socat", f"TCP-LISTEN:{floor_port},bind=127.0.0.1,fork,reuseaddr,backlog=1024,nodelay",
             f"TCP:127.0.0.1:{target},nodelay"], stderr=subprocess.DEVNULL)
        try:
            await_listener(listen)
            await_listener(floor_port)
            for streams in (1, 100):
                speed = compare(listen, floor_port, streams, seconds, rounds)
                ratio = speed["tunnel"] / speed["socat"]
                is_good &= ratio >= FLOOR
                print(f"{streams:4} streams: tunnel {speed['tunnel'] / 1e6:7.0f} MB/s, socat "
                      f"{speed['socat'] / 1e6:7.0f} MB/s, ratio {ratio:.2f} (at least {FLOOR})")
            direct, ours, theirs = round_trips((target, listen, floor_port), rounds)
            print(f"round trip: direct {direct * 1e6:.0f} us, tunnel adds {(ours - direct) * 1e6:.0f} us, socat adds "
                  f"{(theirs - direct) * 1e6:.0f} us")
            kib = memory_per_connection(service.pid, listen)
            is_good &= kib < MEMORY_LIMIT_KIB
            print(f"memory: {kib:.1f} KiB for each of {CONNECTIONS} open connections (below {MEMORY_LIMIT_KIB})")
        finally:
            for process in (service, floor):
                process.terminate()
                process.wait()
            server.terminate()
    return 0 if is_good or is_brief else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:] == ["--briefly"]))

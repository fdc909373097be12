"""The scan farm on real clusters: what it measures, and that nothing is lost when things die."""
import concurrent.futures
import contextlib
import functools
import json
import os
import pathlib
import select
import signal
import subprocess
import sys

import numpy as np
import pytest
import scanline

distributed = pytest.importorskip("distributed")
EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"
sys.path.insert(0, str(EXAMPLES))
import scan_farm  # noqa: E402
import scan_tasks  # noqa: E402

BOUND = 60.0  # seconds; far more than any wait takes


def dies(path):
    """A task that ends its worker on one scan and returns no table for another."""
    if "killer" in path:
        os.kill(os.getpid(), signal.SIGKILL)
    lines = len(np.load(path))
    return np.zeros(3) if "wrong" in path else np.full(2, lines, dtype=[("lines", "i4")])


def table_with_box(height):
    """Return the coordinates of a tilted table with a box on it."""
    x, y = np.meshgrid(np.arange(0.0, 50.0, 0.5), np.arange(0.0, 100.0, 0.5), indexing="ij")
    on_box = (x > 15.0) & (x < 35.0) & (y > 30.0) & (y < 70.0)
    return np.stack([x, y, 500.0 - 0.03 * x - 0.02 * y - height * on_box], axis=-1)


@pytest.fixture
def scans(tmp_path):
    (tmp_path / "scans").mkdir()
    for k in range(6):
        np.save(tmp_path / "scans" / f"scan{k}.npy", table_with_box(20.0 + k))
    return tmp_path / "scans"


@pytest.fixture(scope="module")
def cluster():
    """Two workers that stand for a cluster elsewhere."""
    import dask.config
    with dask.config.set({"distributed.scheduler.allowed-failures": 1,
                          "distributed.deploy.lost-worker-timeout": "1 day"}), \
         distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=":0",
                                  silence_logs=50) as found:
        yield found
        with distributed.Client(found) as client:
            client.wait_for_workers(2, timeout=BOUND)  # Those killed last are back.


@pytest.fixture
def held(scans, tmp_path):
    """Replace a scan by a pipe: what reads it waits. Return what restores it, and a future of the
    pipe that is there as soon as a worker reads."""
    pipe, scan = tmp_path / "pipe", scans / "scan3.npy"
    os.mkfifo(pipe)
    kept = scan.rename(tmp_path / "kept.npy")
    os.link(pipe, scan)
    with concurrent.futures.ThreadPoolExecutor(1) as thread:
        opened = thread.submit(os.open, pipe, os.O_WRONLY)
        yield functools.partial(os.replace, kept, scan), opened
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)  # lets the thread go if no one did
        os.close(opened.result(BOUND))
        os.close(reader)


@contextlib.contextmanager
def started(scans, output, *more):
    """Start the script on the objects of the scans; do not leave it running."""
    farm = subprocess.Popen([sys.executable, EXAMPLES / "scan_farm.py", scans, "--task", "objects",
                             "--output", output, *more], start_new_session=True)
    try:
        yield farm
    finally:
        farm.kill()
        farm.wait(BOUND)


def plain_loop(scans):
    """Return the bytes of the table as a loop over the scans makes it."""
    lines = ["scan,first_line,last_line,samples,x,y,mean_height,max_height"]
    for path in sorted(scans.iterdir()):
        lines += [",".join(map(str, [path, *row])) for row in scan_tasks.objects(path).tolist()]
    return "\n".join(lines).encode() + b"\n"


def test_killing_the_workers_loses_and_doubles_nothing(scans, cluster, held, tmp_path):
    output, parts = tmp_path / "objects.csv", tmp_path / "objects.csv.parts"
    restore, opened = held
    parts.mkdir()
    (parts / "scan3-0.npy.0.tmp").touch()  # as a worker leaves it that dies while it writes
    with distributed.Client(cluster) as client, \
         started(scans, output, "--scheduler", cluster.scheduler_address) as farm:
        opened.result(BOUND)
        restore()
        for pid in client.run(os.getpid).values():  # One of them reads the pipe.
            os.kill(pid, signal.SIGKILL)
        assert farm.wait(BOUND) == 0
    assert output.read_bytes() == plain_loop(scans)
    assert [path.name.split("-")[0] for path in sorted(parts.iterdir())] == [
        f"scan{k}" for k in range(6)]


@pytest.mark.parametrize("how, status, workers", [(signal.SIGINT, 130, "1"),
                                                  (signal.SIGKILL, -signal.SIGKILL, "2")])
def test_an_interrupted_run_goes_on(scans, held, tmp_path, how, status, workers):
    output, parts = tmp_path / "objects.csv", tmp_path / "objects.csv.parts"
    restore, opened = held
    with started(scans, output, "--workers", "1") as farm:
        pipe = opened.result(BOUND)
        (os.killpg if how == signal.SIGINT else os.kill)(farm.pid, how)
        assert farm.wait(BOUND) == status and not output.exists()
    poll = select.poll()
    poll.register(pipe, 0)
    assert poll.poll(1000 * BOUND)  # The worker, which alone read the pipe, is gone.
    done = {path: path.stat().st_mtime_ns for path in parts.glob("*.npy")}
    assert 3 <= len(done) < 6
    restore()
    with started(scans, output, "--workers", workers) as farm:
        assert farm.wait(BOUND) == 0
    assert output.read_bytes() == plain_loop(scans)
    assert all(path.stat().st_mtime_ns == time for path, time in done.items())


def test_scans_that_fail_are_reported_and_left_out(scans, cluster, tmp_path, capsys):
    for name in ("killer", "wrong"):
        np.save(scans / f"{name}.npy", table_with_box(20.0))
    output = tmp_path / "table.npz"
    assert scan_farm.main([
        str(scans), str(tmp_path / "absent.npy"), "--output", str(output),
        "--task", f"{__file__}:dies", "--scheduler", cluster.scheduler_address]) == 1
    report = capsys.readouterr().err
    assert "killer.npy: left out" in report and "wrong.npy: TypeError: the task must" in report
    assert "absent.npy: FileNotFoundError" in report and "9 scans, 3 failed, 12 rows" in report
    rows = np.load(output)["rows"]
    assert rows["scan"].tolist() == sorted(2 * [str(path) for path in scans.glob("scan*")])
    assert (rows["lines"] == 100).all()


def test_tasks_measure_the_box(tmp_path):
    np.savez(tmp_path / "scan.npz", table_with_box(20.0))
    (box,) = scan_tasks.objects(tmp_path / "scan.npz")
    assert (box["first_line"], box["last_line"]) == (31, 69)
    assert box["mean_height"] == pytest.approx(20.0, abs=0.05)
    found = scan_tasks.edges(tmp_path / "scan.npz", length=10.0)
    assert sorted(found["type"]) == ["FEATURE_JUMP_FALL", "FEATURE_JUMP_RISE"]
    assert found["y0"] == pytest.approx([20.0, 60.0], abs=1.5)  # less 10, since the table is tilted
    np.save(tmp_path / "bare.npy", np.full((3, 4, 3), 0.5))
    with pytest.raises(ValueError, match="no plane of its own"):
        scan_tasks.edges(tmp_path / "bare.npy")


def test_a_plane_from_a_file_turns_about_the_origin(tmp_path):
    scan = scanline.as_scan(table_with_box(0.0))
    rotation = scanline.qo_getPlaneCalibPara2(scan).levelMatrix
    centre, point = np.array([3.0, 4.0, 50.0]), scanline.xyz(scan)[0, 0]
    turn = np.reshape(rotation, (3, 3))
    (tmp_path / "plane.json").write_text(json.dumps({
        "levels": "z", "centre": centre.tolist(), "rotation": list(rotation),
        "height": (turn @ (point - centre) + centre)[2]}))
    assert scan_farm.read_plane(tmp_path / "plane.json")["height"] == pytest.approx(
        (turn @ point)[2])


def test_a_part_is_of_one_scan_task_and_option(scans, tmp_path):
    def name(scan=scans / "scan0.npy", task=scan_tasks.objects, **options):
        return scan_farm.part_of(scan, functools.partial(task, **options), tmp_path)
    names = [name(), name(scans / "scan1.npy"), name(task=scan_tasks.edges), name(min_height=3)]
    os.utime(scans / "scan0.npy", ns=(0, 0))
    assert len({*names, name()}) == 5 and name() == name()


@pytest.mark.parametrize("arguments, message", [
    ("--output a.txt", "expected a name in .csv, .npz or .parquet"),
    ("--output a.csv --task nothing", "has no attribute 'nothing'"),
    ("--output a.csv --set scala=3", "unexpected keyword argument 'scala'"),
    ("--output a.csv --set scale", "invalid option value: 'scale'"),
    ("--output a.csv --plane nothing", "no plane to level by"),
    ("--output a.csv", "hold no scans")])
def test_wrong_arguments_are_refused(tmp_path, capsys, arguments, message):
    with pytest.raises(SystemExit):
        scan_farm.parsed([str(tmp_path), *arguments.split()])
    assert message in capsys.readouterr().err


def test_parquet_needs_an_engine(monkeypatch, capsys):
    monkeypatch.setattr(scan_farm.importlib.util, "find_spec", lambda name: None)
    with pytest.raises(SystemExit):
        scan_farm.parsed([".", "--output", "a.parquet"])
    assert "pyarrow or fastparquet" in capsys.readouterr().err

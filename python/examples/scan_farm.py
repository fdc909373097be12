#!/usr/bin/env python3
"""Process many scans on all cores or on a Dask cluster, into one table.

    scan_farm.py scans/ --output edges.csv
    scan_farm.py @list.txt --task objects --set min_height=5 --output objects.npz
    scan_farm.py scans/ --task my_tasks.py:volume --scheduler tcp://10.0.0.1:8786 --output v.csv

The table has one row per edge or object. Each scan leaves its rows in a file of its own beside the
table, so an interrupted run goes on where it stopped. Scans that fail are reported and left out.
"""
import argparse
import asyncio
import contextlib
import csv
import functools
import hashlib
import importlib.util
import inspect
import io
import itertools
import json
import logging
import os
import pathlib
import signal
import sys
import time
import uuid

import numpy as np
import scan_tasks
import scanline


def write_beside(path, write):
    """Write a file under another name and rename it, so that it is there as a whole or not."""
    beside = path.with_name(f"{path.name}.{uuid.uuid4().hex}.tmp")
    try:
        with open(beside, "wb") as file:
            write(file)
            file.flush()
            os.fsync(file.fileno())
        os.replace(beside, path)
    finally:
        beside.unlink(missing_ok=True)


def part_of(scan, task, folder):
    """Return the part file of a scan: its rows, under a name that changes with what they need."""
    path = pathlib.Path(scan).absolute()
    state = path.exists() and [path.stat().st_size, path.stat().st_mtime_ns]
    code = pathlib.Path(inspect.getfile(task.func)).read_text(encoding="utf-8")
    depends = [str(path), state, task.func.__name__, task.keywords, code, scanline.__version__]
    digest = hashlib.sha256(json.dumps(depends, sort_keys=True).encode()).hexdigest()
    return folder / f"{path.stem}-{digest[:20]}.npy"


def process_scan(scan, part, task):
    """Write the part of a scan unless it is there. Return why that failed, or an empty string.

    To run it twice, also at the same time, does no harm: Dask does so when a worker is lost.
    """
    try:
        if not part.exists():
            rows = task(scan)
            if not isinstance(rows, np.ndarray) or not rows.dtype.names or rows.ndim != 1:
                raise TypeError("the task must return a one-dimensional structured array, got "
                                f"{getattr(rows, 'dtype', type(rows))}")
            write_beside(part, lambda file: np.save(file, scanline.flatten(rows)))
    except Exception as error:
        return f"{type(error).__name__}: {error}"
    return ""


def merge(parts):
    """Return the rows of all parts that exist in the order of the scans' names, None if none."""
    loaded = [(scan, np.load(part)) for scan, part in sorted(parts.items()) if part.exists()]
    if not loaded:
        return None
    names = np.repeat([scan for scan, _ in loaded], [len(rows) for _, rows in loaded])
    rows = np.concatenate([rows for _, rows in loaded])
    table = np.empty(len(rows), dtype=[("scan", names.dtype), *rows.dtype.descr])
    table["scan"] = names
    for column in rows.dtype.names:
        table[column] = rows[column]
    return table


def write_table(path, table):
    """Write the table as CSV, NPZ or Parquet, by the name of the file."""
    if path.suffix == ".npz":
        write_beside(path, lambda file: np.savez(file, rows=table))
    elif path.suffix == ".parquet":
        import pandas
        write_beside(path, lambda file: file.write(pandas.DataFrame(table).to_parquet()))
    else:
        text = io.StringIO()
        writer = csv.writer(text, lineterminator="\n")
        writer.writerow(table.dtype.names)
        writer.writerows(table.tolist())
        write_beside(path, lambda file: file.write(text.getvalue().encode()))


def outcomes(client, work, parts):
    """Yield (scan, outcome): an empty string, a text or an exception that says what failed."""
    from distributed import as_completed
    completed = as_completed(with_results=True, raise_errors=False)
    waiting, running = iter(parts.items()), {}
    while True:
        # Two per thread keep the workers busy; more would be under suspicion when a worker dies.
        room = 2 * sum(client.nthreads().values()) - len(running)
        for scan, part in itertools.islice(waiting, max(room, 0 if running else 1)):
            future = client.submit(work, os.path.abspath(scan), part.absolute(), pure=False)
            running[future.key] = scan
            completed.add(future)
        if not running:
            return
        future, result = next(completed)
        outcome = result[1] if isinstance(result, tuple) else result
        yield running.pop(future.key), outcome


def process(client, task, parts, show):
    """Process the scans, calling `show` after each, and return why scans failed, by scan."""
    from distributed.scheduler import KilledWorker
    work = functools.partial(process_scan, task=task)
    ended, failed = {}, 0
    for scan, outcome in outcomes(client, work, parts):
        ended[scan] = outcome
        failed += outcome != ""
        show(len(ended), failed)
    suspects = [scan for scan, outcome in ended.items() if isinstance(outcome, KilledWorker)]
    for scan in suspects:  # Alone: the death of a worker is blamed on all that it had been sent.
        ended.update(outcomes(client, work, {scan: parts[scan]}))
        if isinstance(ended[scan], KilledWorker):
            ended[scan] = "left out, because its worker died each time"
    return {scan: str(outcome) or repr(outcome) for scan, outcome in ended.items() if outcome != ""}


@contextlib.contextmanager
def connected(scheduler, workers):
    """Yield a client of the cluster at an address, or of a new one on this machine."""
    import dask.config
    from distributed import Client, LocalCluster
    if scheduler is None:
        settings = {
            # A worker that is restarted again and again must not be given up.
            "distributed.deploy.lost-worker-timeout": "1000 days",
            # By default workers give back freed memory at once, and each scan asks for it again.
            "distributed.nanny.pre-spawn-environ.MALLOC_TRIM_THRESHOLD_": 2**30,
            "distributed.nanny.pre-spawn-environ.MALLOC_MMAP_THRESHOLD_": 2**30,
        }
        with dask.config.set(settings), \
             LocalCluster(n_workers=workers, threads_per_worker=1, dashboard_address=":0",
                          silence_logs=logging.CRITICAL) as cluster, Client(cluster) as client:
            yield client
            with contextlib.suppress(asyncio.TimeoutError):  # A start cut short makes noise.
                client.wait_for_workers(len(cluster.workers), timeout=30)
        return
    with Client(scheduler) as client:
        client.wait_for_workers(1, timeout=60)
        client.get_versions(check=True)
        versions = client.run(lambda: importlib.import_module("scanline").__version__,
                              on_error="return")
        for worker, version in versions.items():
            if version != scanline.__version__:
                raise ValueError(f"worker {worker}: expected scanline {scanline.__version__}, "
                                 f"got {version!r}")
        yield client


def run(scans, task, folder, scheduler=None, workers=None):
    """Process what is missing of the scans; return the part file and what failed, both by scan."""
    folder.mkdir(parents=True, exist_ok=True)
    parts = {scan: part_of(scan, task, folder) for scan in scans}
    missing = {scan: part for scan, part in parts.items() if not part.exists()}
    show = functools.partial(show_progress, len(missing), time.monotonic())
    failed = {}
    try:
        if missing:
            with connected(scheduler, workers) as client:
                failed = process(client, task, missing, show)
    finally:
        for stray in folder.glob("*.npy.*.tmp"):  # of workers that died while they wrote
            stray.unlink(missing_ok=True)
    return parts, failed


def show_progress(total, start, done, failed):
    """Draw the progress bar on a terminal."""
    if sys.stderr.isatty():
        bar, rate = "#" * (30 * done // total), done / (time.monotonic() - start)
        print(f"\r[{bar:30}] {done}/{total} scans, {failed} failed, {rate:.1f}/s ",
              end="\n" if done == total else "", file=sys.stderr, flush=True)


def read_plane(path):
    """Return the plane in a file of `scanline calibrate --save`, as the tasks take it."""
    try:
        plane = json.loads(pathlib.Path(path).read_text(encoding="utf-8"))
        if plane["levels"] != "z":
            raise ValueError("it levels y")
        # The file turns about its centre, the tasks about the origin.
        shift = plane["centre"][2] - np.dot(plane["rotation"][6:], plane["centre"])
        return {"rotation": plane["rotation"], "height": plane["height"] - float(shift)}
    except (OSError, KeyError, TypeError, ValueError) as error:
        raise argparse.ArgumentTypeError(f"{path} is no plane to level by: {error}") from None


def scans_in(arguments, output):
    """Return the names of all scans: the files given, and what is in the folders given."""
    paths, suffixes = [], (".tif", ".tiff", ".npy", ".npz", ".ply")
    for path in map(pathlib.Path, arguments):
        inside = path.iterdir() if path.is_dir() else [path]
        paths += [p for p in inside if p == path or p.suffix.lower() in suffixes]
    unique = {path.absolute(): str(path) for path in paths}
    unique.pop(output.absolute(), None)
    return sorted(unique.values())


def task_named(text):
    """Return the function NAME of scan_tasks.py, or that of another file for FILE.py:NAME."""
    import cloudpickle
    file, _, name = text.rpartition(":")
    path = pathlib.Path(file or scan_tasks.__file__)
    sys.path.insert(0, str(path.parent))
    try:
        module = importlib.import_module(path.stem)
        for sent in (scan_tasks, module):
            cloudpickle.register_pickle_by_value(sent)  # The workers need not have the file.
        return getattr(module, name)
    except (ImportError, AttributeError) as error:
        raise argparse.ArgumentTypeError(f"{text}: {error}") from None


def table_path(text):
    """Return the path of the table if tables of this kind can be written."""
    path = pathlib.Path(text)
    if path.suffix not in (".csv", ".npz", ".parquet"):
        raise argparse.ArgumentTypeError(f"expected a name in .csv, .npz or .parquet, got {text}")
    engines = map(importlib.util.find_spec, ("pyarrow", "fastparquet"))
    if path.suffix == ".parquet" and not any(engines):
        raise argparse.ArgumentTypeError("Parquet needs pyarrow or fastparquet, neither of which "
                                         "is installed; choose a name in .csv or .npz")
    return path


def option(text):
    """Return the name and value of NAME=NUMBER."""
    name, _, value = text.partition("=")
    return name, json.loads(value)


def parsed(arguments):
    """Return the arguments, with the names of all scans, and the task with its options."""
    parser = argparse.ArgumentParser(description=__doc__, fromfile_prefix_chars="@",
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    add = parser.add_argument
    add("scans", nargs="+", help="files, folders, or @FILE with one of these on each line")
    add("--output", required=True, type=table_path, help="the table: .csv, .npz or .parquet")
    add("--task", default="edges", type=task_named, help="edges, objects, or FILE.py:NAME")
    add("--set", default=[], action="append", type=option, help="NAME=NUMBER, for the task")
    add("--plane", type=read_plane, help="file of scanline calibrate --save; else each scan's")
    add("--scheduler", metavar="ADDRESS", help="use a running cluster, which sees the same files")
    add("--workers", type=int, help="processes on this machine; else one per core")
    found = parser.parse_args(arguments)
    options = dict(found.set, **({"plane": found.plane} if found.plane else {}))
    try:
        inspect.signature(found.task).bind(None, **options)
    except TypeError as error:
        parser.error(f"task {found.task.__name__}: {error}")
    found.task = functools.partial(found.task, **options)
    found.scans = scans_in(found.scans, found.output)
    if not found.scans:
        parser.error("scans: the folders hold no scans")
    return found


def main(arguments=None):
    """Process the scans; return 0, or 1 if a scan failed, or 130 if interrupted."""
    given = parsed(arguments)
    folder = given.output.with_name(given.output.name + ".parts")
    try:
        parts, failed = run(given.scans, given.task, folder, given.scheduler, given.workers)
    except KeyboardInterrupt:
        print("interrupted; the same command goes on from here", file=sys.stderr)
        return 130
    except (OSError, ValueError, asyncio.TimeoutError) as error:
        sys.exit(f"cluster: {error}")
    table = merge(parts)
    if table is not None:
        write_table(given.output, table)
    for scan, reason in sorted(failed.items()):
        print(f"failed: {scan}: {reason}", file=sys.stderr)
    print(f"{len(parts)} scans, {len(failed)} failed, {0 if table is None else len(table)} rows",
          file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    sys.exit(main())
if __name__ == "__mp_main__":  # A worker: Ctrl-C on a terminal reaches it too.
    signal.signal(signal.SIGINT, signal.SIG_IGN)

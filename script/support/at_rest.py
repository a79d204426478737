"""What the application costs while nothing happens: memory, processor and wake-ups, beside the same window on an empty
library. Its readers are programs of their own and are not counted.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import contextlib
import os
import pathlib
import tempfile
import time

import desktop

MINUTE = 60


def processor_time(process):
    """Seconds of all its threads."""
    ticks = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()[11:13]
    return sum(map(int, ticks)) / os.sysconf("SC_CLK_TCK")


def field(status, name):
    """The number of a line of a file in /proc."""
    return next(int(line.split()[1]) for line in status.read_text().splitlines() if line.startswith(f"{name}:"))


def memory(process):
    """Megabytes."""
    return field(pathlib.Path(f"/proc/{process.pid}/status"), "VmRSS") * 1024 / 1e6


def wakeups(process):
    """How often each thread has gone to sleep so far."""
    tasks = pathlib.Path(f"/proc/{process.pid}/task").iterdir()
    return {task.name: field(task / "status", "voluntary_ctxt_switches") for task in tasks}


def wait_for_rest(process):
    """Until it has used no processor for ten seconds: the first walk and the page are done."""
    limit = time.monotonic() + 300
    used, since = processor_time(process), time.monotonic()
    while time.monotonic() - since < 10:
        if time.monotonic() > limit:
            raise SystemExit("the application does not come to rest")
        time.sleep(0.5)
        if processor_time(process) != used:
            used, since = processor_time(process), time.monotonic()


def measure(program, library):
    """For "large" and "empty": megabytes of memory, and in a minute seconds of processor and wake-ups."""
    with contextlib.ExitStack() as stack:
        display = stack.enter_context(desktop.display())
        running = {}
        for name in ("large", "empty"):
            folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="lumbra-bench-")))
            root = library if name == "large" else folder / "library"
            root.mkdir(exist_ok=True)
            start = desktop.application(program, display, str(folder / "state"), folder, {"LUMBRA_LIBRARY": str(root)})
            running[name] = stack.enter_context(start)
        for process in running.values():
            wait_for_rest(process)
        before = {name: (processor_time(process), wakeups(process)) for name, process in running.items()}
        time.sleep(MINUTE)
        return {name: {"memory": memory(process),
                       "processor": processor_time(process) - before[name][0],
                       "wakeups": sum(count - before[name][1].get(task, 0) for task, count in wakeups(process).items())}
                for name, process in running.items()}

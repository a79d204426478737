"""A virtual display with a window manager, the application on it, and the state that it tells.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import contextlib
import json
import os
import pathlib
import signal
import socket
import subprocess
import tempfile
import time

# The one window gets the whole display, without a frame.
OPENBOX = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application class="*" type="normal"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>
"""


def end(process):
    """Ends a child that this program started, whatever it does."""
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


@contextlib.contextmanager
def display():
    """Runs Xvfb on a free number with openbox in it; yields the display's name."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1440x900x24", "-nolisten", "tcp",
                               "-noreset"], pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise SystemExit("Xvfb does not start")
        name = f":{number}"
        with tempfile.TemporaryDirectory(prefix="lumbra-display-") as folder:
            config = pathlib.Path(folder) / "openbox.xml"
            config.write_text(OPENBOX)
            manager = subprocess.Popen(["openbox", "--config-file", str(config)], env={**os.environ, "DISPLAY": name},
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            try:
                managed = ["xprop", "-display", name, "-root", "_NET_SUPPORTING_WM_CHECK"]
                limit = time.monotonic() + 20
                while "window id" not in subprocess.run(managed, capture_output=True, text=True).stdout:
                    if time.monotonic() > limit:
                        raise SystemExit("openbox does not answer")
                    time.sleep(0.02)
                yield name
            finally:
                end(manager)
    finally:
        end(server)


@contextlib.contextmanager
def application(program, on_display, state_socket, folder, extra, errors=None):
    """Runs the application with its own folders for everything but what `extra` sets; yields its process. What it writes
    about errors goes to `errors`, as for Popen."""
    private = {name: str(pathlib.Path(folder) / name.lower()) for name in
               ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR")}
    environment = {**os.environ, **private, "DISPLAY": on_display, "QT_QPA_PLATFORM": "xcb",
                   "LUMBRA_STATE_SOCKET": state_socket, "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent", **extra}
    environment.pop("WAYLAND_DISPLAY", None)
    for name in private:
        os.makedirs(environment[name], mode=0o700, exist_ok=True)
    process = subprocess.Popen([str(program)], env=environment, stderr=errors)
    try:
        yield process
    finally:
        end(process)


def ask(state_socket):
    """The application's state, or nothing while it does not answer."""
    try:
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(10)
            connection.connect(state_socket)
            connection.sendall(b"dump\n")
            with connection.makefile("rb") as answer:
                return json.loads(answer.readline())
    except (OSError, ValueError):
        return None

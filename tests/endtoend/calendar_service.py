"""The data server on a private desktop: its processes, its settings, and a CalDAV server for it."""

import base64
import os
import signal
import socket
import urllib.request

import desktop
import gi

gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
from gi.repository import ECal, EDataServer, Gio  # noqa: E402

FACTORY = "evolution-calendar-factory"
REGISTRY = "evolution-source-registry"
NO_WAIT_FOR_ONLINE = 0xFFFFFFFF


def processes(program):
    """Processes of this desktop that run the program."""
    mark = f"PINDLE_DESKTOP_ROOT={os.environ['PINDLE_DESKTOP_ROOT']}".encode()
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/cmdline", "rb") as file:
                command = file.read().split(b"\0")[0].decode()
            with open(f"/proc/{pid}/environ", "rb") as file:
                environment = file.read().split(b"\0")
        except OSError:
            continue
        if os.path.basename(command) == program and mark in environment:
            found.append(int(pid))
    return found


def send(program, number):
    pids = processes(program)
    for pid in pids:
        os.kill(pid, number)
    return pids


def kill(program):
    send(program, signal.SIGKILL)
    desktop.wait_for(lambda: not processes(program), f"{program} to end")


def source_file(uid):
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "evolution", "sources")
    os.makedirs(folder, exist_ok=True)
    return os.path.join(folder, f"{uid}.source")


def choose_calendar(uid):
    """Makes it the default one, for programs that start afterwards; None for the store's own."""
    # Through the settings' own interface: the file behind them holds the desktop's others too.
    settings = Gio.Settings.new("org.gnome.Evolution.DefaultSources")
    if uid:
        settings.set_string("default-calendar", uid)
    else:
        settings.reset("default-calendar")
    Gio.Settings.sync()


def add_calendar(uid, source):
    with open(source_file(uid), "w", encoding="utf-8") as file:
        file.write(source)
    kill(FACTORY)
    kill(REGISTRY)


def remove_calendar(uid):
    os.remove(source_file(uid))
    kill(FACTORY)
    kill(REGISTRY)


def caldav_calendar(name, port):
    return ("[Data Source]\n"
            f"DisplayName={name}\nEnabled=true\nParent=caldav-stub\n\n"
            f"[Authentication]\nHost=127.0.0.1\nMethod=none\nPort={port}\nUser=bob\n\n"
            "[Security]\nMethod=none\n\n"
            "[WebDAV Backend]\nResourcePath=/bob/plans/\n\n"
            "[Offline]\nStaySynchronized=true\n\n"
            "[Calendar]\nBackendName=caldav\n")


def events(uid="system-calendar"):
    """Title, instants and zone of each event, as another program of the desktop sees them."""
    registry = EDataServer.SourceRegistry.new_sync(None)
    client = ECal.Client.connect_sync(registry.ref_source(uid), ECal.ClientSourceType.EVENTS,
                                      NO_WAIT_FOR_ONLINE, None)
    _, components = client.get_object_list_as_comps_sync("#t", None)

    def instant(value):
        if value.get_value().is_utc():
            return value.get_value().as_timet()
        _, zone = client.get_timezone_sync(value.get_tzid(), None)
        return value.get_value().as_timet_with_zone(zone)

    found = []
    for component in components:
        start = component.get_dtstart()
        found.append({"title": component.get_summary().get_value(),
                      "location": component.get_location(),
                      "start": instant(start), "end": instant(component.get_dtend()),
                      "zone": start.get_tzid()})
    return found


class CalDavServer:
    """A real CalDAV server on the loopback interface with one empty calendar."""

    def __init__(self):
        self.folder = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "caldav")
        os.makedirs(self.folder)
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        self.config = os.path.join(self.folder, "config")
        rights = os.path.join(self.folder, "rights")
        with open(self.config, "w", encoding="utf-8") as file:
            file.write(f"[server]\nhosts = 127.0.0.1:{self.port}\n[auth]\ntype = none\n"
                       f"[storage]\nfilesystem_folder = {self.folder}/data\n"
                       f"[rights]\ntype = from_file\nfile = {rights}\n")
        with open(rights, "w", encoding="utf-8") as file:
            file.write("[all]\nuser: .*\ncollection: .*\npermissions: RrWw\n")
        self.process = None
        self.start()
        self.request("MKCALENDAR", "/bob/plans/")

    def start(self):
        self.process = desktop.Process(["radicale", "-C", self.config])
        desktop.wait_for(self.answers, "the CalDAV server to answer")

    def end(self):
        self.process.end()

    def answers(self):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self.port)) == 0

    def request(self, method, path):
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}{path}", method=method)
        # Any password will do; the name makes the user's collection.
        request.add_header("Authorization", "Basic " + base64.b64encode(b"bob:").decode())
        with urllib.request.urlopen(request, timeout=desktop.DEADLINE) as reply:
            return reply.read()

    def files(self):
        """What the server holds of the calendar, one text per event."""
        folder = os.path.join(self.folder, "data", "collection-root", "bob", "plans")
        names = [name for name in os.listdir(folder) if name.endswith(".ics")]
        texts = []
        for name in names:
            with open(os.path.join(folder, name), encoding="utf-8") as file:
                texts.append(file.read())
        return texts

"""One program per session: starting it again, its actions, and how it ends."""

import os
import signal
import stat
import subprocess
import time
import unittest

import desktop
from desktop import Editor, Pindle, Process, titled
from https_server import Server

PROGRAM = os.environ["PINDLE_PROGRAM"]
REDIRECTED = os.environ["PINDLE_REDIRECTED"]
SENTENCE = "Lunch with Ana on March 12, 2027 at 12:30"
NAME, PATH, INTERFACE = "app.pindle.Pindle", "/app/pindle/Pindle", "org.freedesktop.Application"
END = 1.0  # seconds the program may take to end


def run(*arguments, program=PROGRAM, **environment):
    """Runs the program, or another, to its end."""
    return subprocess.run([program, *arguments], capture_output=True, text=True, check=False,
                          timeout=desktop.DEADLINE, env={**os.environ, **environment})


def call(method, *arguments):
    return run("--user", "call", NAME, PATH, INTERFACE, method, *arguments, program="busctl")


def act(name):
    return call("ActivateAction", "sava{sv}", name, "0", "0")


class Application(unittest.TestCase):
    def setUp(self):
        # What the browser is asked to open ends up in a file.
        self.opened = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "opened")
        folder = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "bin")
        os.makedirs(folder, exist_ok=True)
        opener = os.path.join(folder, "xdg-open")
        with open(opener, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nprintf "%s\\n" "$1" >> "{self.opened}"\n')
        os.chmod(opener, stat.S_IRWXU)
        if os.path.exists(self.opened):
            os.remove(self.opened)
        self.path = f"{folder}:{os.environ['PATH']}"
        desktop.move_pointer(640, 120)

    def start(self, program=PROGRAM, **environment):
        pindle = Pindle(program, PATH=self.path, **environment)
        self.addCleanup(pindle.process.end)
        return pindle

    def addresses(self):
        if not os.path.exists(self.opened):
            return []
        with open(self.opened, encoding="utf-8") as file:
            return file.read().split()

    def end_of(self, pindle):
        """The exit status of a program that has been told to end, and how long it took, in s."""
        begin = time.monotonic()
        status = pindle.process.process.wait(desktop.DEADLINE)
        return status, time.monotonic() - begin

    def test_a_second_start_shows_the_panel_of_the_first_and_ends(self):
        pindle = self.start()
        self.assertIsNone(pindle.panel_window())
        for _ in range(2):
            again = run()
            self.assertEqual((again.returncode, again.stdout, again.stderr), (0, "", ""))
            window = pindle.wait_for_panel()
            self.assertEqual(desktop.geometry(window)[:2], (430, 140))
        self.assertTrue(desktop.find(pindle.pid, "Ready when you are"), "nothing was captured")

    def test_a_second_start_with_an_action_does_it_in_the_first(self):
        pindle = self.start()
        self.assertEqual(run("--action", "settings").returncode, 0)
        window = desktop.wait_for(lambda: titled("Settings"), "the settings")
        self.assertIn(window, desktop.windows_of(pindle.pid))
        self.assertIsNone(pindle.panel_window())

    def test_a_first_start_with_an_action_does_it(self):
        pindle = Pindle.__new__(Pindle)
        pindle.process = Process([PROGRAM, "--action=help"])
        pindle.pid = pindle.process.pid
        self.addCleanup(pindle.process.end)
        desktop.wait_for(lambda: titled("Help"), "the help")
        self.assertIsNone(pindle.panel_window())

    def test_quitting_what_does_not_run_starts_nothing(self):
        self.assertEqual(run("--action", "quit").returncode, 0)
        self.assertNotEqual(act("about").returncode, 0)

    def test_activate_and_open_show_the_panel_whatever_comes_with_them(self):
        pindle = self.start()
        for arguments in (("Activate", "a{sv}", "0"),
                          ("Activate", "a{sv}", "1", "desktop-startup-id", "s", SENTENCE),
                          ("Open", "asa{sv}", "2", "https://evil.example/x", "file:///etc/passwd",
                           "0")):
            with self.subTest(arguments=arguments):
                self.assertEqual(call(*arguments).returncode, 0)
                pindle.wait_for_panel()
                self.assertTrue(desktop.find(pindle.pid, "Ready when you are"))
                desktop.click(desktop.find(pindle.pid, "Close"))
                pindle.wait_until_hidden()
        self.assertEqual(self.addresses(), [])
        self.assertFalse(any("evil" in text for text in desktop.texts(pindle.pid)))

    def test_the_capture_action_converts_what_is_highlighted(self):
        pindle = self.start()
        with Editor(f"{SENTENCE}\n") as editor:
            editor.select_line()
            self.assertEqual(act("capture").returncode, 0)
            pindle.wait_until_filled()
            self.assertEqual(pindle.field("Start Date"), "2027-03-12")
            self.assertEqual(desktop.active_window(), editor.window)
        self.assertEqual(pindle.calendar_files(), [])

    def test_the_windows_actions_show_the_windows(self):
        pindle = self.start()
        for action, title in (("settings", "Settings"), ("help", "Help")):
            self.assertEqual(act(action).returncode, 0)
            window = desktop.wait_for(lambda: titled(title), f"the window {title}")
            desktop.wait_for(lambda: desktop.active_window() == window, "it to come to the front")
        self.assertIsNone(pindle.panel_window())

    def test_about_and_report_bugs_open_the_website(self):
        pindle = self.start()
        self.assertEqual(act("about").returncode, 0)
        desktop.wait_for(lambda: len(self.addresses()) == 1, "the home page")
        self.assertEqual(act("report-bugs").returncode, 0)
        desktop.wait_for(lambda: len(self.addresses()) == 2, "the contact page")
        home, contact = self.addresses()
        self.assertTrue(home.startswith("https://"))
        self.assertIn("/contact?reason=bug&anonymized_key=", contact)
        self.assertIsNone(pindle.panel_window())

    def test_what_is_no_action_is_refused(self):
        pindle = self.start()
        for name in ("save", "convert", "Settings", "", SENTENCE):
            done = act(name)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("no such action", done.stderr)
        done = call("ActivateAction", "sava{sv}", "capture", "1", "s", SENTENCE, "0")
        self.assertNotEqual(done.returncode, 0, "no text can be sent along")
        self.assertIn("parameter", done.stderr)
        time.sleep(0.3)
        self.assertIsNone(pindle.panel_window())
        self.assertTrue(pindle.process.is_running())

    def test_the_bus_offers_nothing_else_and_hears_no_text(self):
        pindle = self.start()
        listing = run("--user", "introspect", NAME, PATH, program="busctl").stdout
        own, inside = [], False
        for line in listing.splitlines():
            words = line.split()
            if words[1] == "interface":
                inside = not words[0].startswith("org.freedesktop.DBus.")
                own += [words[0]] if inside else []
            elif inside:
                own.append(words[0])
        self.assertEqual(own, [INTERFACE, ".Activate", ".ActivateAction", ".Open"])
        with Process(["dbus-monitor", "--session"]) as monitor, Editor(f"{SENTENCE}\n") as editor:
            desktop.wait_for(lambda: "NameAcquired" in monitor.log(), "the monitor to listen")
            editor.select_line()
            self.assertEqual(act("capture").returncode, 0)
            pindle.wait_until_filled()
            desktop.wait_for(lambda: "ActivateAction" in monitor.log(), "the monitor to hear")
            self.assertNotIn("Lunch", monitor.log())
            self.assertNotIn("Ana", monitor.log())
        self.assertEqual(pindle.calendar_files(), [])

    def test_quit_ends_it_at_once(self):
        pindle = self.start()
        self.assertEqual(act("quit").returncode, 0)
        status, seconds = self.end_of(pindle)
        self.assertEqual(status, 0, pindle.process.log())
        self.assertLess(seconds, END)

    def test_quit_ends_it_during_a_conversion(self):
        server = Server(os.environ["PINDLE_DESKTOP_ROOT"])
        self.addCleanup(server.close)
        server.reply = "silence"
        pindle = self.start(REDIRECTED, PINDLE_TEST_PORT=str(server.port),
                            PINDLE_TEST_CA=server.authority)
        with Editor(f"{SENTENCE}\n") as editor:
            editor.select_line()
            act("capture")
            desktop.wait_for(server.conversions, "the conversion to begin")
            act("quit")
            status, seconds = self.end_of(pindle)
        self.assertEqual(status, 0, pindle.process.log())
        self.assertLess(seconds, END)

    def test_quit_ends_it_while_a_question_is_open(self):
        pindle = self.start()
        with Editor(f"{SENTENCE}\n") as editor:
            editor.select_line()
            act("capture")
            pindle.wait_until_filled()
            desktop.click(pindle.tile("Apple Calendar"))
            desktop.wait_for(lambda: desktop.find(pindle.pid, "Allow"), "the question")
            act("quit")
            status, seconds = self.end_of(pindle)
        self.assertEqual(status, 0, pindle.process.log())
        self.assertLess(seconds, END)
        self.assertEqual(pindle.calendar_files(), [])

    def start_with_signals(self, disposition):
        """The program, with the signals it inherits ignored or not."""
        process = Process(["env", f"--{disposition}-signal=TERM,INT,HUP", PROGRAM])
        self.addCleanup(process.end)
        desktop.wait_for(lambda: desktop.application(process.pid), "Pindle to be up")
        return process

    def test_signals_end_it_in_order(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                process = self.start_with_signals("default")
                process.process.send_signal(number)
                begin = time.monotonic()
                self.assertEqual(process.process.wait(desktop.DEADLINE), 0, process.log())
                self.assertLess(time.monotonic() - begin, END)

    def test_signals_it_was_started_to_ignore_do_not_end_it(self):
        process = self.start_with_signals("ignore")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            process.process.send_signal(number)
        self.assertTrue(desktop.stays(process.is_running, 0.5))
        self.assertEqual(act("quit").returncode, 0)
        self.assertEqual(process.process.wait(desktop.DEADLINE), 0)

    def test_without_a_session_bus_it_runs(self):
        with Process([PROGRAM], DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus") as process:
            time.sleep(0.6)
            self.assertTrue(process.is_running(), process.log())
            desktop.press_shortcut()
            desktop.wait_for(lambda: desktop.windows_of(process.pid), "the panel")
            process.process.terminate()
            self.assertEqual(process.process.wait(desktop.DEADLINE), 0, process.log())

    def test_a_session_bus_that_goes_away_leaves_it_running(self):
        with Process(["dbus-daemon", "--session", "--nofork", "--print-address"]) as bus:
            address = desktop.wait_for(lambda: bus.log().strip(), "a bus of its own")
            process = Process([PROGRAM], DBUS_SESSION_BUS_ADDRESS=address)
            self.addCleanup(process.end)
            time.sleep(0.6)
            bus.end()
            time.sleep(0.3)
            self.assertTrue(process.is_running(), process.log())
            desktop.press_shortcut()
            desktop.wait_for(lambda: desktop.windows_of(process.pid), "the panel")

    def test_the_options_are_answered_without_a_desktop(self):
        nowhere = {"DISPLAY": "", "DBUS_SESSION_BUS_ADDRESS": ""}
        version = run("--version", **nowhere)
        self.assertEqual(version.returncode, 0)
        self.assertRegex(version.stdout, r"\Apindle \d+\.\d+\.\d+\n\Z")
        helped = run("--help", **nowhere)
        self.assertEqual(helped.returncode, 0)
        self.assertIn("--action NAME", helped.stdout)
        for wrong in (["--frobnicate"], ["--action"], ["--action", "save"], ["note.txt"]):
            done = run(*wrong, **nowhere)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn(wrong[-1], done.stderr)
            self.assertIn("usage:", done.stderr)


if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)

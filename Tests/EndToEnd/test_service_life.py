"""What the service does to the application that started it: it dies, floods, hangs, cannot be started."""
import json
import os
import pathlib
import shutil
import signal
import time
import unittest

from support.case import EndToEndTestCase
from support.paths import MENU, RESOURCES, SERVICE
from support.polling import eventually
from support.programs import HANGING_STOP_BOUND, STOP_BOUND, service_state, status

KILLS = 50
READY = "[GUI] service ready on 127.0.0.1:43200"
CRASHED = "[GUI] service exited unexpectedly with status 137"

FLOOD = """#!/usr/bin/python3
import os, sys
block = {pattern} * (1024 * 1024 // len({pattern}))
for _ in range(100):
    rest = block
    while rest:
        rest = rest[os.write(1, rest):]
sys.exit(3)
"""


class ServiceLife(EndToEndTestCase):
    def log_folder(self):
        return pathlib.Path(self.desktop.environment["XDG_DATA_HOME"]) / "Veranox" / "logs"

    def log_entries(self):
        """The records of the active log file; the last line may be on its way."""
        try:
            lines = (self.log_folder() / "activity.jsonl").read_text().splitlines()
        except FileNotFoundError:
            return []
        entries = []
        for line in lines:
            try:
                entries.append(json.loads(line))
            except json.JSONDecodeError:
                self.assertIs(line, lines[-1], "only the last line may be half a record")
        return entries

    def logged(self):
        return [entry["message"] for entry in self.log_entries()]

    def start_application_beside(self, write_service):
        """The application in a prefix of its own; `write_service` is given the path of the service there."""
        application = self.folder / "prefix" / "bin" / MENU.name
        service = pathlib.Path(os.path.normpath(application.parent / RESOURCES / SERVICE.name))
        application.parent.mkdir(parents=True)
        service.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(MENU, application)
        write_service(service)
        return self.start_application(program=application)

    def start_application_beside_script(self, text):
        def write(service):
            service.write_text(text)
            service.chmod(0o755)
        return self.start_application_beside(write)

    def quit(self, application, within=STOP_BOUND):
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(within), 0)

    def own_service(self, application):
        (pid,) = eventually(application.own_services, "a service of its own")
        return pid


class KilledService(ServiceLife):
    def test_icon_and_log_tell_of_a_crash_and_of_the_recovery(self):
        panel = self.start_panel()
        application = self.start_application()
        panel.await_item()
        application.await_state("online", 15)
        os.kill(self.own_service(application), signal.SIGKILL)
        eventually(lambda: panel.tool_tip() == "Veranox — Error", "the icon tells of the crash", 3)
        eventually(lambda: panel.tool_tip() == "Veranox — Online", "the icon tells of the recovery", 10)
        eventually(lambda: self.logged().count(READY) == 2, "the log file tells of it")
        messages = self.logged()
        told = [messages.index(CRASHED), messages.index("[GUI] exited with status 137"),
                messages.index(READY)]
        self.assertEqual(told, sorted(told, reverse=True), "ready, then gone, then noticed")
        self.assertIn("[GUI] started", messages[told[0]:])
        sequences = [entry["sequence"] for entry in self.log_entries()]
        self.assertEqual(sequences, list(range(1, len(sequences) + 1)))
        self.quit(application)

    def test_fifty_kills_in_a_row_are_fifty_recoveries(self):
        application = self.start_application()
        application.await_state("online", 15)
        seen = set()
        for number in range(1, KILLS + 1):
            pid = self.own_service(application)
            self.assertNotIn(pid, seen)
            seen.add(pid)
            os.kill(pid, signal.SIGKILL)
            eventually(lambda: application.output().count(CRASHED) == number, f"crash {number} is noticed", 5)
            eventually(lambda: application.output().count(READY) == number + 1, f"recovery {number}", 10)
        self.assertEqual(service_state(self.desktop), "online")
        self.assertNotIn("stopping automatic recovery", application.output())
        self.quit(application)


class QuitAtAnAwkwardMoment(ServiceLife):
    SLEEPER = "#!/usr/bin/python3\nimport signal, time\n{}\nprint('up', flush=True)\ntime.sleep(60)\n"

    def start_sleeper(self, preparation=""):
        application = self.start_application_beside_script(self.SLEEPER.format(preparation))
        application.await_output("[GUI] up")
        self.assertEqual(service_state(self.desktop), "starting")
        return application

    def test_while_it_starts_no_service_is_left(self):
        application = self.start_sleeper()
        pid = self.own_service(application)
        self.quit(application)
        eventually(lambda: not os.path.exists(f"/proc/{pid}"), "the service is gone")
        self.assertNotIn("shutdown", application.output())

    def test_a_service_that_ignores_the_request_is_killed_within_two_seconds(self):
        application = self.start_sleeper("signal.signal(signal.SIGTERM, signal.SIG_IGN)")
        pid = self.own_service(application)
        begin = time.monotonic()
        self.quit(application)
        self.assertGreaterEqual(time.monotonic() - begin, 1.4, "it got its time")
        self.assertLess(time.monotonic() - begin, 3.5)
        self.assertFalse(os.path.exists(f"/proc/{pid}"))

    def test_twice_is_once(self):
        application = self.start_sleeper("signal.signal(signal.SIGTERM, lambda *_: print('asked to end', flush=True))")
        application.signal(signal.SIGTERM)
        application.await_output("[GUI] asked to end")  # and goes on: until it is killed there is time for the next
        application.signal(signal.SIGTERM)
        self.assertEqual(application.wait(STOP_BOUND), 0)
        self.assertEqual(application.output().count("[GUI] asked to end"), 1)

    def test_before_the_first_probe_is_answered(self):
        application = self.start_application()
        application.await_output("[GUI] probing local service health")
        self.quit(application, HANGING_STOP_BOUND)
        self.assertEqual(application.own_services(), [])


class FloodingService(ServiceLife):
    def memory(self, application):
        text = pathlib.Path(f"/proc/{application.pid}/status").read_text()
        return {line.split()[0]: int(line.split()[1]) for line in text.splitlines() if line.startswith("Vm")}["VmHWM:"]

    def hear(self, pattern):
        application = self.start_application_beside_script(FLOOD.format(pattern=repr(pattern)))
        application.await_output("[GUI] started", 15)
        before, slowest = self.memory(application), 0.0

        def is_over():
            nonlocal slowest
            begin = time.monotonic()
            self.assertTrue(status(self.desktop), "the application answers while the service floods")
            slowest = max(slowest, time.monotonic() - begin)
            return "[GUI] exited with status 3" in self.logged()
        eventually(is_over, "the end of the flood", 60)
        self.assertLess(slowest, 2.0, "seconds; the start of the program that asks is among them")
        self.assertLess(self.memory(application) - before, 64 * 1024, "kilobytes")
        self.assertLessEqual(sum(file.stat().st_size for file in self.log_folder().iterdir()), 8 * 1024 * 1024)
        self.quit(application)

    def test_in_lines(self):
        self.hear(b"x" * 79 + b"\n")

    def test_without_a_line_end(self):
        self.hear(b"x")

    def test_in_bytes_that_are_no_text(self):
        self.hear(b"\xff\x00\n")


class LogFolder(ServiceLife):
    def setUp(self):
        super().setUp()
        self.log_folder().parent.mkdir(parents=True, exist_ok=True)

    def check_that_it_goes_on(self):
        application = self.start_application()
        application.await_state("online", 15)
        self.quit(application)

    def test_a_file_in_its_place_is_left_alone(self):
        self.log_folder().write_text("mine")
        self.check_that_it_goes_on()
        self.assertEqual(self.log_folder().read_text(), "mine")

    def test_a_link_in_place_of_the_file_is_not_followed(self):
        self.log_folder().mkdir()
        target = self.folder / "target"
        target.write_text("mine")
        (self.log_folder() / "activity.jsonl").symlink_to(target)
        self.check_that_it_goes_on()
        self.assertEqual(target.read_text(), "mine")

    def test_one_that_goes_and_comes_back_under_the_running_application(self):
        application = self.start_application()
        application.await_state("online", 15)
        eventually(lambda: READY in self.logged(), "the log file")
        shutil.rmtree(self.log_folder())
        self.log_folder().write_text("in the way")
        os.kill(self.own_service(application), signal.SIGKILL)
        application.await_output(CRASHED, 5)
        self.log_folder().unlink()
        application.await_state("online", 15)
        eventually(lambda: READY in self.logged(), "it is written again")
        self.assertEqual(self.log_folder().stat().st_mode & 0o777, 0o700)
        self.assertEqual((self.log_folder() / "activity.jsonl").stat().st_mode & 0o777, 0o600)
        self.quit(application)


class UnusableService(ServiceLife):
    def setUp(self):
        super().setUp()
        self.skip_where_a_service_is_installed()

    def check_that_it_says(self, write_service, sentence):
        application = self.start_application_beside(write_service)
        application.await_output(f"[GUI] start failed: {sentence}", 15)
        application.await_state("error")
        self.quit(application)

    def test_one_that_others_can_write_is_not_run(self):
        def write(service):
            shutil.copy(SERVICE, service)
            service.chmod(0o775)
        self.check_that_it_says(write, "Veranox's bundled service could not be found. Reinstall Veranox and try again.")

    def test_one_that_is_not_executable_is_not_run(self):
        def write(service):
            shutil.copy(SERVICE, service)
            service.chmod(0o644)
        self.check_that_it_says(write, "Veranox's bundled service could not be found. Reinstall Veranox and try again.")

    def test_one_of_another_machine_is_told_in_the_systems_words(self):
        def write(service):
            program = bytearray(SERVICE.read_bytes())
            program[18:20] = b"\x16\x00"  # the header's machine: S/390
            service.write_bytes(program)
            service.chmod(0o755)
        place = os.path.normpath(self.folder / "prefix" / "bin" / RESOURCES / SERVICE.name)
        self.check_that_it_says(write, f"{place} could not be started: Exec format error.")


if __name__ == "__main__":
    unittest.main()

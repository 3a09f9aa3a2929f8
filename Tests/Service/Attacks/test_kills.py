"""A service that is killed in the middle of writing: the next one finds a whole document, the one before or the one
after, and everything that was acknowledged."""

import itertools
import json
import random
import threading
import unittest
import urllib.error

from attack import CONFIG, AttackTest, lab

ROUNDS = 12
OUTCOMES = (OSError, EOFError, urllib.error.URLError, ValueError)  # of a request that a kill cuts off


class Kills(AttackTest):
    def write_for_ever(self, service, numbers, acknowledged):
        try:
            for number in numbers:
                config = service.ask("GET", "/api/config")
                config["Router"]["ProfileHostnameBase"] = f"save{number}"
                service.ask("POST", "/api/config?force=true", config)
                service.ask("POST", "/api/tunnels", {"Name": "t", "OriginalName": "t", "Tunnel": self.tunnel(number)})
                service.ask("POST", "/api/feedback", {
                    "message": str(number), "kind": "", "contact": "", "appVersion": "", "os": ""})
                acknowledged.append(number)
        except OUTCOMES:
            pass

    @staticmethod
    def tunnel(number):
        return {"DisplayName": f"save{number}", "Profile": "p", "Mode": "native", "Listen": "127.0.0.1:40123",
                "Target": "inner.tail1.ts.net:80", "Disabled": True}

    def test_at_any_moment(self):
        numbers, acknowledged = itertools.count(1), [0]
        chance = random.Random(20250301)
        for _ in range(ROUNDS):
            service = self.start_service(lab(tunnels={"t": self.tunnel(0)}))
            writer = threading.Thread(target=self.write_for_ever, args=(service, numbers, acknowledged))
            writer.start()
            writer.join(chance.uniform(0.02, 0.3))
            service.process.kill()
            service.process.wait()
            writer.join()
            last = acknowledged[-1]
            document = json.loads((service.home / CONFIG).read_text())
            if last:
                for text in (document["Router"]["ProfileHostnameBase"], document["Tunnels"]["t"]["DisplayName"]):
                    self.assertIn(int(text.removeprefix("save")), (last, last + 1))
            self.assert_feedback_is_there(service, acknowledged)
            numbers = itertools.count(last + 1)

    def assert_feedback_is_there(self, service, acknowledged):
        box = service.home / ".local/share/Veranox/feedback.jsonl"
        if acknowledged == [0]:
            return
        found = set()
        for line in box.read_text().splitlines():
            try:
                found.add(int(json.loads(line)["message"]))
            except ValueError:
                pass
        self.assertEqual(set(acknowledged) - {0} - found, set())


if __name__ == "__main__":
    unittest.main()

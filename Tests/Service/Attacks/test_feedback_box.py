"""The box for feedback: nothing that came is lost, and it never closes for good."""

import json
import unittest

from attack import SUPPORT_FOLDER, AttackTest, lab

FULL = 64 * 1024 * 1024  # more than any box holds


class FeedbackBox(AttackTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service(lab())
        self.box = self.service.home / SUPPORT_FOLDER / "feedback.jsonl"

    def give(self, message):
        return self.service.ask("POST", "/api/feedback", {
            "message": message, "kind": "idea", "contact": "", "appVersion": "1.0.0", "os": "Linux"})

    def messages(self):
        """What a reader of lines finds, whole lines only."""
        found = []
        for line in self.box.read_text().splitlines():
            try:
                found.append(json.loads(line)["message"])
            except ValueError:
                pass
        return found

    def test_behind_a_torn_line(self):
        for torn in ('{"message":"a power cut', "{", '{"message":"whole","but":"no end of line"}'):
            with self.subTest(torn):
                self.box.write_text('{"message":"first"}\n' + torn)
                self.give("second")
                self.assertIn("first", self.messages())
                self.assertEqual(self.messages()[-1], "second")
                self.assertIn(torn, self.box.read_text())

    def test_a_full_box_makes_room_and_keeps_what_it_had(self):
        line = json.dumps({"message": "x" * 1000}) + "\n"
        with self.box.open("w") as file:
            while file.tell() < FULL:
                file.write(line * 1000)
        self.give("after")
        self.assertEqual(self.messages(), ["after"])
        kept = [path for path in self.box.parent.glob("feedback*") if path != self.box]
        self.assertEqual(len(kept), 1, kept)
        self.assertGreaterEqual(kept[0].stat().st_size, FULL)
        self.give("and again")
        self.assertEqual(self.messages(), ["after", "and again"])

    def test_a_box_that_is_no_file_of_ours(self):
        other = self.folder / "other"
        other.write_text("belongs to somebody else")
        self.box.symlink_to(other)
        wire = self.wire(self.service.port)
        body = json.dumps({"message": "m", "kind": "", "contact": "", "appVersion": "", "os": ""})
        wire.send(f"POST /api/feedback HTTP/1.1\r\nHost: 127.0.0.1:{self.service.port}\r\nX-Veranox-Token: "
                  f"{self.service.token}\r\nContent-Length: {len(body)}\r\n\r\n{body}".encode())
        self.assertEqual(wire.answer()[0], 503)
        self.assertEqual(other.read_text(), "belongs to somebody else")


if __name__ == "__main__":
    unittest.main()

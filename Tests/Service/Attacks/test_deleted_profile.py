"""A profile that a forced save takes away carries nothing any more, live streams included."""

import unittest

from attack import AttackTest, Wire, answers, eventually, free_port, lab

SOON = 2  # seconds


class DeletedProfile(AttackTest):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()
        self.tunnel, self.published, self.other = free_port(), free_port(), free_port()
        network = lab(
            tunnels={
                "t": {"Profile": "p", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.tunnel}"},
                "other": {"Profile": "q", "Target": "inner.tail1.ts.net:80", "Listen": f"127.0.0.1:{self.other}"}},
            publications={"web": {"Profile": "p", "Target": f"127.0.0.1:{self.host.port}", "Port": self.published}},
            hosts={"inner": f"127.0.0.1:{self.host.port}"})
        network["profiles"]["p"]["node_address"] = "127.0.0.1"
        self.service = self.start_service(network)
        for port in (self.tunnel, self.published, self.other):
            self.assertTrue(eventually(lambda port=port: answers(port)))

    def live_stream(self, port):
        wire = self.wire(port)
        wire.send(b"before")
        self.assertEqual(wire.socket.recv(100), b"before")
        return wire

    def delete_profile(self):
        config = self.service.ask("GET", "/api/config")
        del config["Profiles"]["p"]
        self.service.ask("POST", "/api/config?force=true", config)

    def test_its_streams_end(self):
        streams = [self.live_stream(self.tunnel), self.live_stream(self.published)]
        kept = self.live_stream(self.other)
        self.delete_profile()
        for stream in streams:
            self.assertTrue(stream.is_ended(SOON), "the stream goes on")
        kept.send(b"after")
        self.assertEqual(kept.socket.recv(100), b"after", "what stands on another profile goes on")

    def test_its_ports_are_closed_and_it_says_why(self):
        self.delete_profile()
        for port in (self.tunnel, self.published):
            self.assertTrue(eventually(lambda port=port: not answers(port), SOON), "it still takes connections")
        for record in (self.service.tunnel("t"), self.service.publication("web")):
            self.assertEqual(record["State"], "error")
            self.assertTrue(record["LastError"].endswith("."), record)
            self.assertEqual(record["ActiveConns"], 0)

    def test_it_comes_back_with_the_profile(self):
        config = self.service.ask("GET", "/api/config")
        self.delete_profile()
        self.service.ask("POST", "/api/config?force=true", config)
        for port in (self.tunnel, self.published):
            self.assertTrue(eventually(lambda port=port: self.is_carried(port)), "it carries again")

    @staticmethod
    def is_carried(port):
        try:
            with Wire(port) as wire:
                wire.send(b"again")
                return wire.socket.recv(100) == b"again"
        except OSError:
            return False


if __name__ == "__main__":
    unittest.main()

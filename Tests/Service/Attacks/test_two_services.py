"""Two services over the folders of one person: the first keeps them."""

import unittest

from attack import AttackTest, lab


class TwoServices(AttackTest):
    def test_the_second_says_who_is_there_and_touches_nothing(self):
        first = self.start_service(lab())
        token, config = first.token, first.ask("GET", "/api/config")
        sentence = self.assert_refuses_to_start()
        self.assertIn(f"(process {first.process.pid})", sentence)
        self.assertEqual(first.token, token)
        first.ask("POST", "/api/config", config)

    def test_either_folder_is_enough(self):
        for variable in ("XDG_DATA_HOME", "XDG_CONFIG_HOME"):
            with self.subTest(variable):
                first = self.start_service(lab())
                moved = {variable: str(self.folder / "elsewhere")}
                sentence = self.assert_refuses_to_start(env={"HOME": str(first.home), **moved})
                self.assertIn(f"(process {first.process.pid})", sentence)
                self.assertEqual(first.end(), 0)

    def test_a_killed_one_leaves_nothing_that_stands_in_the_way(self):
        first = self.start_service(lab())
        first.process.kill()
        first.process.wait()
        second = self.start_service(lab())
        self.assert_answers(second)
        second.ask("POST", "/api/config", second.ask("GET", "/api/config"))


if __name__ == "__main__":
    unittest.main()

"""The factory presets' way from the module's bundle into the user's folder: many processes at once, processes that end at
any moment, and calls of the system that fail.

usage: bank_test.py ORVO-HOST ORVO.VST3 STOP-AT-CALL.SO [TEST]
"""

import errno
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

HOST, MODULE, STOPPER = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
PRESET = '<?xml version="1.0" encoding="UTF-8"?> <orvo description="{}"></orvo>'


def contents(folder):
    """What the folder holds for its user: every file's bytes, without the list of the plug-in's."""
    return {str(path.relative_to(folder)): path.read_bytes()
            for path in folder.rglob("*") if path.is_file() and path.name != ".orvo-bank"}


class BankTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="orvo-bank-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.flag = self.folder / "stopped"
        self.bundle = self.folder / "Orvo.vst3"
        shutil.copytree(MODULE, self.bundle)
        self.begin()

    def begin(self):
        """With nothing there."""
        self.configuration = self.folder / "configuration"
        shutil.rmtree(self.configuration, ignore_errors=True)
        self.presets = self.configuration / "Tessarin/Orvo/Presets"
        self.factory = self.presets / "Factory"

    def bundle_with(self, files):
        """The built module's bundle with other presets."""
        factory = self.bundle / "Contents/Resources/Factory"
        shutil.rmtree(factory)
        for name, text in files.items():
            (factory / name).parent.mkdir(parents=True, exist_ok=True)
            (factory / name).write_text(text)
        return self.bundle

    def start(self, bundle, **environment):
        return subprocess.Popen(
            [HOST, "presets", "--plugin", str(bundle)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env={**os.environ, "XDG_CONFIG_HOME": str(self.configuration), **environment})

    def names(self, output):
        """Of the presets that the program lists."""
        return sorted(line[2:28].strip() for line in output.splitlines() if line.startswith("  "))

    def run_once(self, bundle, **environment):
        process = self.start(bundle, **environment)
        return process.communicate()[0], process.returncode

    def stop(self, bundle, call, by):
        """A process that is stopped at that call, or None if it does not make so many."""
        self.flag.unlink(missing_ok=True)
        result = self.run_once(
            bundle, LD_PRELOAD=STOPPER, ORVO_STOP_AT=str(call), ORVO_STOP_BY=str(by), ORVO_STOP_FLAG=str(self.flag))
        return result if self.flag.exists() else None

    def test_twenty_processes_at_once(self):
        bank = contents(MODULE / "Contents/Resources/Factory")
        self.assertEqual(len([name for name in bank if name.endswith(".tpre")]), 56)
        for _ in range(3):
            self.begin()
            processes = [self.start(MODULE) for _ in range(20)]
            outputs = [process.communicate() for process in processes]
            self.assertEqual([process.returncode for process in processes], [0] * 20, outputs)
            self.assertEqual(len(self.names(outputs[0][0])), 57)
            self.assertEqual({output for output, _ in outputs}, {outputs[0][0]})
            self.assertEqual(contents(self.factory), bank)
            self.assertEqual(os.listdir(self.presets), ["Factory"], "nothing else stays")

    def begin_with_older_version(self):
        """What the folder holds before and after it comes up to date, the same and another file of the user's in it."""
        self.begin()
        self.run_once(self.bundle_with({"A/Same.tpre": PRESET.format("same"), "Old.tpre": PRESET.format("old"),
                                        "Edited.tpre": PRESET.format("old")}))
        listed = self.factory / ".orvo-bank"
        version, rest = listed.read_text().split("\n", 1)
        self.assertEqual(version, "1.0.1")
        listed.write_text("0.9\n" + rest)
        (self.factory / "A/Mine.tpre").write_text(PRESET.format("mine"))
        (self.factory / "Edited.tpre").write_text(PRESET.format("edited"))
        (self.presets / "User").mkdir()
        (self.presets / "User/Own.tpre").write_text(PRESET.format("own"))
        before = contents(self.factory)

        new = {"A/Same.tpre": PRESET.format("same"), "Edited.tpre": PRESET.format("new"), "B/New.tpre": PRESET.format("new")}
        after = {name: text.encode() for name, text in new.items()}
        after["A/Mine.tpre"] = before["A/Mine.tpre"]
        after["Edited (kept).tpre"] = before["Edited.tpre"]
        return self.bundle_with(new), before, after

    def begin_with_nothing(self):
        self.begin()
        new = {"A/One.tpre": PRESET.format("one"), "Two.tpre": PRESET.format("two")}
        return self.bundle_with(new), {}, {name: text.encode() for name, text in new.items()}

    def expected_names(self, files):
        user = ["Own"] if (self.presets / "User").exists() else []
        factory = ["Initial Patch"] if files else []
        return sorted([pathlib.Path(name).stem for name in files] + factory + user)

    def stop_everywhere(self, by, judge):
        """`judge` sees what each stop has left; the next process puts everything in order."""
        for begin in (self.begin_with_nothing, self.begin_with_older_version):
            call = 0
            while True:
                call += 1
                bundle, before, after = begin()
                user = contents(self.presets / "User")
                stopped = self.stop(bundle, call, by)
                with self.subTest(by=by, call=call, begin=begin.__name__):
                    if stopped is not None:
                        present = contents(self.factory)
                        self.assertIn(present, (before, after), "it is as it was or as it will be")
                        judge(stopped, present)
                    output, status = self.run_once(bundle)
                    self.assertEqual((status, self.names(output)), (0, self.expected_names(after)))
                    self.assertEqual(contents(self.factory), after)
                    self.assertEqual(contents(self.presets / "User"), user)
                    self.assertLessEqual(set(os.listdir(self.presets)), {"Factory", "User"}, "nothing else stays")
                if stopped is None:
                    break
            self.assertGreater(call, 10, "there was something to stop")

    def test_a_process_that_ends_at_any_moment(self):
        self.stop_everywhere(0, lambda stopped, present: self.assertEqual(stopped[1], -signal.SIGKILL))

    def test_calls_that_fail(self):
        def lists_what_is_there(stopped, present):
            names = self.expected_names(present)
            self.assertEqual((stopped[1], self.names(stopped[0])), (0 if names else 1, names))

        # A full disk, one that is read-only from then on, and a file system that knows neither links nor exchanged names.
        for by in (errno.ENOSPC, -errno.EROFS, errno.EINVAL):
            self.stop_everywhere(by, lists_what_is_there)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)

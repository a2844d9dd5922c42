"""The LV2 bundle beside the VST3 module: the same sound, states, presets and parameters, in orvo-host and in a host that has
nothing but LV2's own functions.

usage: lv2_test.py ORVO-HOST ORVO.VST3 ORVO.LV2 DESCRIBER [TEST]
Both programs are as a shell would read them, so that an emulator may stand in front.
"""

import array
import ctypes
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest
import wave
import xml.etree.ElementTree as xml

import bare_lv2_host as bare

HOST, VST3, LV2, DESCRIBER = shlex.split(sys.argv[1]), *sys.argv[2:4], shlex.split(sys.argv[4])
FRAMES = 6000

# Every host in here, also this process, finds a home with nothing in it and no screen.
home = tempfile.TemporaryDirectory(prefix="orvo-lv2-")
folder = pathlib.Path(home.name)
os.environ.update(HOME=home.name, XDG_CONFIG_HOME=home.name, DISPLAY="none")
presets_folder = folder / "Tessarin/Orvo/Presets"


def orvo(*words, plugin=LV2):
    return subprocess.run([*HOST, *map(str, words), "--plugin", plugin], check=True, capture_output=True, text=True).stdout


def write_input():
    """Noise of both channels that every clipper works on, in 16 bits."""
    noise = random.Random(5)
    samples = array.array("h", (noise.randrange(-32000, 32000) for _ in range(2 * FRAMES)))
    with wave.open(str(folder / "in.wav"), "wb") as file:
        file.setparams((2, 2, 48000, 0, "NONE", ""))
        file.writeframes(samples.tobytes())
    return [[sample / 32768 for sample in samples[channel::2]] for channel in (0, 1)]


INPUT = write_input()


def render(plugin, *words):
    """The samples' bytes, and factor and latency as the program prints them."""
    table = orvo("render", folder / "in.wav", folder / "out.wav", "--force", "--bits", "float", *words, plugin=plugin)
    data = (folder / "out.wav").read_bytes()
    return data[data.index(b"data") + 8:], re.search(r"(Off|\d+x) +(\d+)", table.splitlines()[-1]).groups()


def saved(plugin, *words):
    """The plug-in's own block; VST3's wrapper adds to it."""
    orvo("state", "save", folder / "it.state", "--force", *words, plugin=plugin)
    data = (folder / "it.state").read_bytes()
    return data[:8 + int.from_bytes(data[4:8], "little") + 1]


def values_in(text):
    return {row.get("id"): float(row.get("value")) for row in xml.fromstring(text).iter("PARAM")}


def bare_render(instance, latency, block=512):
    """What a host that drops the latency hears."""
    channels = [samples + [0.0] * latency for samples in INPUT]
    heard = [[], []]
    for start in range(0, len(channels[0]), block):
        parts = [(ctypes.c_float * len(channel[start:start + block]))(*channel[start:start + block]) for channel in channels]
        for result, part in zip(heard, instance.run(*parts)):
            result.extend(part)
    interleaved = array.array("f", (sample for frame in zip(*heard) for sample in frame))
    return interleaved[2 * latency:].tobytes()


class SameSoundTest(unittest.TestCase):
    def test_layouts_factors_and_modes(self):
        for number, (layout, factor, mode, section) in enumerate((
                ("Single Band", "Off", "Hard", "single"), ("Single Band", "16x", "Soft I", "single"),
                ("Multi Band", "2x", "Soft II", "mid_band"), ("Multi Band", "8x", "Boost", "low_band"),
                ("Mid / Side", "4x", "Pressure", "mid_channel"), ("Left / Right", "2x", "Hard", "right_channel"))):
            words = ["--block", 64 << number % 4]
            for setting in (f"layout={layout}", f"oversampling={factor}", f"mode_{section}={mode}", f"threshold_{section}=-9.7",
                            f"shape_{section}=31%", f"gain_{section}=2.3", "in_gain=4", "crossover_low=217"):
                words += ["--set", setting]
            with self.subTest(layout=layout, factor=factor):
                self.assertEqual(render(LV2, *words), render(VST3, *words))

    def test_state_of_one_is_read_by_the_other(self):
        words = ["--preset", "Factory/Creative/Telephone", "--set", "gain_post=-3.3", "--set", "threshold_single=-7.13"]
        for first, second in ((VST3, LV2), (LV2, VST3)):
            block = saved(first, *words)
            self.assertIn(b"Telephone.tpre", block)
            (folder / "first.state").write_bytes(block)
            self.assertEqual(saved(second, "--state", folder / "first.state"), block)
            self.assertEqual(render(second, "--state", folder / "first.state"), render(first, *words))


class DescriptionTest(unittest.TestCase):
    def test_parameters_are_those_of_vst3(self):
        tables = [orvo("params", plugin=plugin).splitlines()[:71] for plugin in (LV2, VST3)]
        self.assertEqual(*tables)
        starts = [tables[1][0].index(title) for title in ("id", "title", "default", "now", "least", "most")]
        rows = [[line[a:b].strip() for a, b in zip(starts, starts[1:] + [None])] for line in tables[1][1:]]

        described = (pathlib.Path(LV2) / "dsp.ttl").read_text()
        for kind in ("readable", "writable"):
            listed = re.search(rf"patch:{kind}(.*?) ;", described, re.S)[1]
            self.assertEqual(re.findall(r"plug:(\w+)", listed), [row[0] for row in rows])

        # Hosts show names of choices and units from here.
        for name, _, default, _, least, most in rows:
            statements = re.search(rf"^<{bare.URI}:{name}>(.*?) \.$", described, re.S | re.M)
            points = re.findall(r'rdfs:label "([^"]*)" ; rdf:value (\d+)', statements[1] if statements else "")
            if points:
                value = re.search(rf"^plug:{name}\n.*?lv2:default ([\d.-]+)", described, re.S | re.M)[1]
                self.assertEqual([point[1] for point in points], [str(i) for i in range(len(points))])
                self.assertEqual((points[0][0], points[-1][0], dict((b, a) for a, b in points)[str(round(float(value)))]),
                                 (least, most, default))
            else:
                unit = re.search(r"[a-zA-Z%]*$", least)[0]
                self.assertEqual(statements and statements[1].split()[-1],
                                 {"dB": "units:db", "Hz": "units:hz", "%": None}[unit])

    def test_it_names_nothing_of_the_building_machine(self):
        copy = shutil.copytree(LV2, folder / "copy/Orvo.lv2")
        for name in ("manifest.ttl", "dsp.ttl", "ui.ttl", "presets.ttl"):
            (copy / name).unlink()
        builder = folder / "builder"
        preset = builder / "Tessarin/Orvo/Presets/User/Mine.tpre"
        preset.parent.mkdir(parents=True)
        shutil.copy(copy / "Resources/Factory/Bass/Bass Wall.tpre", preset)
        before = sorted(builder.rglob("*"))
        subprocess.run([*DESCRIBER, copy / "Orvo.so"], check=True, env=dict(os.environ, HOME=str(builder), XDG_CONFIG_HOME=str(builder)))
        self.assertEqual(sorted(builder.rglob("*")), before)
        self.assertEqual(subprocess.run(["diff", "-r", copy, LV2], capture_output=True, text=True).stdout, "")
        paths = {re.search(rb' preset_path="([^"]*)"', block)[1].decode() for _, block in bare.presets_of(LV2).values()}
        files = (copy / "Resources").rglob("*.tpre")
        self.assertEqual(paths, {str(file.relative_to(copy / "Resources")) for file in files} | {""})


class BareHostTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.host = bare.Host(LV2)

    def make(self, **how):
        instance = bare.Instance(self.host, **how)
        self.addCleanup(instance.close)
        return instance

    def block_of(self, instance):
        return bare.decoded(instance.save()[bare.STATE][0].decode())

    def silence(self, frames=64):
        return [(ctypes.c_float * frames)() for _ in range(2)]

    def test_presets_set_what_their_files_say_and_show_their_names(self):
        presets = bare.presets_of(LV2)
        files = {file.stem: file for file in (pathlib.Path(LV2) / "Resources/Factory").rglob("*.tpre")}
        self.assertEqual(len(presets), 57)
        self.assertEqual(set(presets), set(files) | {"Initial Patch"})
        initial = values_in(self.block_of(self.make())[8:-1])
        instance = self.make()
        for name, (bank, block) in presets.items():
            self.assertEqual(instance.restore(bare.as_stored(block)), 0)
            text = self.block_of(instance)[8:-1].decode()
            path = xml.fromstring(text).get("preset_path")
            if name == "Initial Patch":
                self.assertEqual((bank, values_in(text), path), (None, initial, ""))
            else:
                file = files[name]
                self.assertEqual((bank, values_in(text)), (file.parent.name, values_in(file.read_text())), name)
                self.assertEqual(path, str(presets_folder / "Factory" / bank / file.name))

    def test_sound_and_latency_of_presets(self):
        for name in ("Telephone", "Bass Wall", "Growl On Top"):
            instance = self.make()
            instance.restore(bare.as_stored(bare.presets_of(LV2)[name][1]))
            instance.run(*self.silence())
            expected, (_, latency) = render(VST3, "--preset", name)
            self.assertEqual(instance.latency, int(latency))
            fresh = self.make()
            fresh.restore(bare.as_stored(self.block_of(instance)))
            self.assertEqual(bare_render(fresh, int(instance.latency)), expected)

    def test_events_set_parameters_and_come_back(self):
        instance = self.make()
        instance.send([("layout", 1.0), ("oversampling", 4.0), ("threshold_low_band", -9.5), ("no_such_thing", 3.0),
                       ("in_gain", float("nan")), ("gain_post", 1e30)])
        instance.run(*self.silence())
        values = values_in(self.block_of(instance)[8:-1])
        self.assertEqual([values[name] for name in ("layout", "oversampling", "threshold_low_band", "in_gain")], [1, 4, -9.5, 0])
        self.assertLessEqual(values["gain_post"], 18)
        self.assertEqual(instance.latency, 67)

    def test_odd_blocks(self):
        # As one run, in place or not, cut to pieces, with empty ones between, and longer than was agreed.
        words = ["--set", "oversampling=4x", "--set", "threshold_single=-9"]
        expected = render(VST3, *words)[0]
        for block, agreed, in_place in ((FRAMES + 61, 64, True), (512, 512, False), (37, 64, True)):
            instance = self.make(block_size=agreed)
            instance.send([("oversampling", 2.0), ("threshold_single", -9.0)])
            instance.run(*self.silence())
            fresh = self.make(block_size=agreed)
            fresh.restore(instance.save())
            run = fresh.run
            fresh.run = lambda *parts: (run(*self.silence(), count=0), run(*parts, in_place=in_place))[1]
            self.assertEqual(bare_render(fresh, 61, block), expected)
            self.assertEqual(fresh.latency, 61)

    def test_runs_where_audio_ports_alone_are_connected(self):
        block = bare.presets_of(LV2)["Telephone"][1]
        expected = render(VST3, "--preset", "Telephone")[0]
        for null in (False, True):
            instance = self.make(audio_alone=True)
            if null:
                for port in range(4, 9):
                    self.host.plugin.connect_port(instance.handle, port, None)
            instance.restore(bare.as_stored(block))
            self.assertEqual(bare_render(instance, 61), expected)

    def test_disabled_it_returns_what_it_gets(self):
        instance = self.make()
        instance.send([("threshold_single", -20.0)])
        for enabled in (1.0, 0.0):
            instance.enable(enabled)
            left, right = ((ctypes.c_float * 64)(*[0.9] * 64) for _ in range(2))
            outputs = instance.run(left, right)
            self.assertEqual(all(abs(sample - 0.9) < 1e-6 for sample in outputs[0]), enabled == 0.0)

    def test_refuses_what_is_no_state(self):
        instance = self.make()
        before = self.block_of(instance)
        text, atom = bare.LV2 + "ext/atom#String", bare.STATE
        for stored in ({}, {atom: (b"", text)}, {atom: (b"12.garbage\0", text)}, {atom: (b"999999999.AAAA\0", text)},
                       {atom: (b"\1\0\0\0", bare.LV2 + "ext/atom#Int")}):
            instance.restore(stored)
            self.assertEqual(self.block_of(instance), before)

    def test_instances_come_and_go_on_many_threads(self):
        presets = [bare.as_stored(block) for _, block in list(bare.presets_of(LV2).values())[:8]]
        failures = []

        def work(number):
            try:
                for turn in range(6):
                    instance = bare.Instance(self.host)
                    for preset in presets:
                        instance.restore(preset)
                        instance.send([("layout", float(turn % 4)), ("oversampling", float((turn + number) % 5))])
                        instance.run(*self.silence())
                        instance.save()
                    instance.close()
            except Exception as error:
                failures.append(error)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], verbosity=2)

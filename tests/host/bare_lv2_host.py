"""A host for the built LV2 module without JUCE and lilv: the plug-in's functions by ctypes, its description read as text.

It has no event loop and no screen, gives the features that the plug-in asks for, and no more.
"""

import ctypes
import pathlib
import re

LV2 = "http://lv2plug.in/ns/"
URI = "https://tessarin.example/plugins/orvo"
STATE = URI + ":StateString"

FLOATS = ctypes.POINTER(ctypes.c_float)


class Feature(ctypes.Structure):
    _fields_ = [("uri", ctypes.c_char_p), ("data", ctypes.c_void_p)]


MAP = ctypes.CFUNCTYPE(ctypes.c_uint32, ctypes.c_void_p, ctypes.c_char_p)


class Map(ctypes.Structure):
    _fields_ = [("handle", ctypes.c_void_p), ("map", MAP)]


class Option(ctypes.Structure):
    _fields_ = [("context", ctypes.c_int), ("subject", ctypes.c_uint32), ("key", ctypes.c_uint32),
                ("size", ctypes.c_uint32), ("type", ctypes.c_uint32), ("value", ctypes.c_void_p)]


class Descriptor(ctypes.Structure):
    _fields_ = [("uri", ctypes.c_char_p),
                ("instantiate", ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_void_p, ctypes.c_double, ctypes.c_char_p,
                                                 ctypes.POINTER(ctypes.POINTER(Feature)))),
                ("connect_port", ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint32, ctypes.c_void_p)),
                ("activate", ctypes.CFUNCTYPE(None, ctypes.c_void_p)),
                ("run", ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint32)),
                ("deactivate", ctypes.CFUNCTYPE(None, ctypes.c_void_p)),
                ("cleanup", ctypes.CFUNCTYPE(None, ctypes.c_void_p)),
                ("extension_data", ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_char_p))]


STORE = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_uint32, ctypes.c_void_p, ctypes.c_size_t,
                         ctypes.c_uint32, ctypes.c_uint32)
RETRIEVE = ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint32, ctypes.POINTER(ctypes.c_size_t),
                            ctypes.POINTER(ctypes.c_uint32), ctypes.POINTER(ctypes.c_uint32))


class StateInterface(ctypes.Structure):
    _fields_ = [("save", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, STORE, ctypes.c_void_p, ctypes.c_uint32,
                                          ctypes.c_void_p)),
                ("restore", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, RETRIEVE, ctypes.c_void_p, ctypes.c_uint32,
                                             ctypes.c_void_p))]


class Host:
    """Knows the module of a bundle, and names by numbers, as hosts do."""

    def __init__(self, bundle):
        self.bundle = pathlib.Path(bundle)
        self.names = []
        self.library = ctypes.CDLL(str(self.bundle / "Orvo.so"), mode=ctypes.RTLD_LOCAL)
        self.library.lv2_descriptor.restype = ctypes.POINTER(Descriptor)
        self.plugin = self.library.lv2_descriptor(0).contents
        assert self.plugin.uri.decode() == URI and not self.library.lv2_descriptor(1)
        self.state = StateInterface.from_address(self.plugin.extension_data((LV2 + "ext/state#interface").encode()))
        self.map_function = MAP(lambda _, uri: self.number(uri.decode()))
        self.map = Map(None, self.map_function)

    def number(self, name):
        if name not in self.names:
            self.names.append(name)
        return self.names.index(name) + 1

    def features(self, block_size):
        """And what must live as long."""
        size = ctypes.c_int32(block_size)
        options = (Option * 2)()
        options[0] = Option(0, 0, self.number(LV2 + "ext/buf-size#maxBlockLength"), 4, self.number(LV2 + "ext/atom#Int"),
                            ctypes.addressof(size))
        features = [Feature((LV2 + "ext/urid#map").encode(), ctypes.addressof(self.map)),
                    Feature((LV2 + "ext/options#options").encode(), ctypes.addressof(options)),
                    Feature((LV2 + "ext/buf-size#boundedBlockLength").encode(), None)]
        array = (ctypes.POINTER(Feature) * 4)(*[ctypes.pointer(feature) for feature in features])
        return array, (size, options, features)


class Instance:
    """Ports: two of audio in, two out, events in and out, latency, free-wheeling, enabled."""

    def __init__(self, host, rate=48000.0, block_size=512, audio_alone=False):
        self.host, plugin = host, host.plugin
        features, self.kept = host.features(block_size)
        self.handle = plugin.instantiate(ctypes.addressof(plugin), rate, (str(host.bundle) + "/").encode(), features)
        assert self.handle
        self.events = [ctypes.create_string_buffer(16384) for _ in range(2)]
        self.controls = [ctypes.c_float(value) for value in (-1, 0, 1)]
        for port, memory in [] if audio_alone else enumerate(self.events + self.controls, 4):
            plugin.connect_port(self.handle, port, ctypes.addressof(memory))
        plugin.activate(self.handle)

    def close(self):
        self.host.plugin.deactivate(self.handle)
        self.host.plugin.cleanup(self.handle)

    latency = property(lambda self: self.controls[0].value)

    def enable(self, value):
        self.controls[2].value = value

    def send(self, values=()):
        """The next run's events: a value for each of these parameters."""
        word = lambda *numbers: b"".join(number.to_bytes(4, "little") for number in numbers)
        number, atom, patch = self.host.number, LV2 + "ext/atom#", LV2 + "ext/patch#"
        body = word(0, 0)
        for name, value in values:
            content = word(0, number(patch + "Set"),
                           number(patch + "property"), 0, 4, number(atom + "URID"), number(URI + ":" + name), 0,
                           number(patch + "value"), 0, 4, number(atom + "Float")) + bytes(ctypes.c_float(value)) + word(0)
            body += word(0, 0, len(content), number(atom + "Object")) + content
        data = word(len(body), number(atom + "Sequence")) + body
        ctypes.memmove(self.events[0], data, len(data))

    def run(self, left, right, count=None, in_place=True):
        """On ctypes arrays of floats; what comes out."""
        outputs = (left, right) if in_place else [type(left)(), type(right)()]
        for port, memory in enumerate((left, right, *outputs)):
            self.host.plugin.connect_port(self.handle, port, ctypes.addressof(memory))
        capacity = ctypes.c_uint32(len(self.events[1]) - 8)
        ctypes.memmove(self.events[1], ctypes.addressof(capacity), 4)
        self.host.plugin.run(self.handle, len(left) if count is None else count)
        self.send()
        return outputs

    def save(self):
        """What the plug-in stores, by name."""
        stored = {}

        def store(_, key, value, size, kind, flags):
            stored[self.host.names[key - 1]] = (ctypes.string_at(value, size), self.host.names[kind - 1])
            return 0

        assert self.host.state.save(self.handle, STORE(store), None, 0, None) == 0
        return stored

    def restore(self, stored):
        memory = {key: ctypes.create_string_buffer(value, len(value)) for key, (value, _) in stored.items()}

        def retrieve(_, key, size, kind, flags):
            name = self.host.names[key - 1]
            if name not in stored:
                return None
            size[0], kind[0], flags[0] = len(memory[name]), self.host.number(stored[name][1]), 3
            return ctypes.addressof(memory[name])

        return self.host.state.restore(self.handle, RETRIEVE(retrieve), None, 0, None)


ALPHABET = ".ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+"


def decoded(text):
    """The bytes of JUCE's text of them: their number, then six bits a letter, the lowest first."""
    size, letters = text.rstrip("\0").split(".", 1)
    bits = sum(ALPHABET.index(letter) << 6 * i for i, letter in enumerate(letters))
    return bits.to_bytes(len(letters) * 6 // 8 + 1, "little")[:int(size)]


def encoded(data):
    bits = int.from_bytes(data, "little")
    return f"{len(data)}." + "".join(ALPHABET[bits >> 6 * i & 63] for i in range((len(data) * 8 + 5) // 6))


def as_stored(block):
    return {STATE: (encoded(block).encode() + b"\0", LV2 + "ext/atom#String")}


def presets_of(bundle):
    """Names in the manifest's order, with bank and block."""
    manifest, states = [(pathlib.Path(bundle) / name).read_text() for name in ("manifest.ttl", "presets.ttl")]
    found = {}
    for uri, label, rest in re.findall(r'<([^<>]*:preset:[^<>]*)>\s+a pset:Preset ;.*?rdfs:label "([^"]*)" ;(.*?) \.\n', manifest, re.S):
        bank = re.search(r"pset:bank <([^<>]*)>", rest)
        name = bank and re.search(rf'<{re.escape(bank[1])}> a pset:Bank ; rdfs:label "([^"]*)"', manifest)[1]
        state = re.search(rf'<{re.escape(uri)}>.*?<{re.escape(STATE)}> "([^"]*)"', states, re.S)[1]
        found[label] = (name, decoded(state))
    return found

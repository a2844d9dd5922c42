#!/usr/bin/python3
"""usage: no_sequencer.py PROGRAM LIBRARY
Builds a library that answers a program's calls of ALSA's sequencer as if there were one without any other client, for
machines without /dev/snd/seq. It is for LD_PRELOAD."""

import re
import subprocess
import sys

OWN = {
    "snd_seq_open": "int snd_seq_open (void** handle) { *handle = calloc (1, 4096); return 0; }",
    "snd_seq_client_id": "int snd_seq_client_id () { return 128; }",
    # Time goes on: 1920 ticks a second are 120 beats of 960. The skew is one.
    "snd_seq_queue_status_get_tick_time": "unsigned snd_seq_queue_status_get_tick_time () { struct timespec now; "
                                          "clock_gettime (CLOCK_MONOTONIC, &now); static struct timespec first; "
                                          "if (first.tv_sec == 0) first = now; return (now.tv_sec - first.tv_sec) * 1920 "
                                          "+ (now.tv_nsec - first.tv_nsec) / 1000 * 1920 / 1000000; }",
    "snd_seq_queue_tempo_get_skew": "unsigned snd_seq_queue_tempo_get_skew () { return 0x10000; }",
    "snd_seq_queue_tempo_get_skew_base": "unsigned snd_seq_queue_tempo_get_skew_base () { return 0x10000; }",
    # a pipe that stays empty, so that who waits for events sleeps
    "snd_seq_poll_descriptors_count": "int snd_seq_poll_descriptors_count () { return 1; }",
    "snd_seq_poll_descriptors": "int snd_seq_poll_descriptors (void* handle, struct pollfd* files) "
                                "{ static int ends[2]; if (ends[1] == 0) pipe (ends); "
                                "files[0].fd = ends[0]; files[0].events = POLLIN; return 1; }",
    # nothing ever arrives, and none of the others exists: the error is -ENOENT
    "snd_seq_event_input": "int snd_seq_event_input () { return -2; }",
    "snd_seq_query_next_client": "int snd_seq_query_next_client () { return -2; }",
    "snd_seq_query_port_subscribers": "int snd_seq_query_port_subscribers () { return -2; }",
    "snd_seq_query_next_port": "int snd_seq_query_next_port () { return -2; }",
}


def definition(name):
    if name in OWN:
        return OWN[name]
    if name.endswith("_sizeof"):
        return f"size_t {name} () {{ return 1024; }}"
    if name.endswith("_malloc"):
        return f"int {name} (void** object) {{ *object = calloc (1, 1024); return 0; }}"
    if re.search(r"_(get_name|real_time|get_addr|get_root|get_dest|get_sender|status|get_event)$", name) \
            and not name.startswith("snd_seq_get_"):
        return f"void* {name} () {{ static long nothing[16]; return nothing; }}"
    return f"long {name} () {{ return 0; }}"


def main(program, library):
    symbols = subprocess.run(["nm", "-D", "--undefined-only", program], capture_output=True, text=True, check=True).stdout
    names = sorted(set(re.findall(r"\bsnd_seq_\w+", symbols)))
    headers = ("poll", "stdlib", "time", "unistd")
    source = "\n".join([*(f"#include <{name}.h>" for name in headers), *map(definition, names), ""])
    subprocess.run(["gcc", "-shared", "-fPIC", "-w", "-xc", "-", "-o", library], input=source, text=True, check=True)


if __name__ == "__main__":
    main(*sys.argv[1:])

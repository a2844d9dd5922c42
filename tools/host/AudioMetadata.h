#pragma once

#include <sndfile.h>

/** Copies what describes the audio from one open file to another into which no audio was written yet, as far as both
    formats have room for it: title, artist, album, track, date, genre, comment, copyright, licence and software; the
    broadcast and cart chunks; cue points; loops and root note; and the XML of broadcast files, in which the ISRC
    stands. */
void copySoundMetadata (SNDFILE* from, SNDFILE* to);

#include "AudioMetadata.h"

#include <cstring>
#include <string>
#include <vector>

namespace
{
void copyStrings (SNDFILE* from, SNDFILE* to)
{
    for (auto kind = static_cast<int> (SF_STR_FIRST); kind <= SF_STR_LAST; ++kind)
        if (const auto* text = sf_get_string (from, kind))
            sf_set_string (to, kind, text);
}

/** Of a fixed size. */
template <typename Info>
void copyInfo (SNDFILE* from, SNDFILE* to, int get, int set)
{
    Info info {};
    if (sf_command (from, get, &info, sizeof (info)) == SF_TRUE)
        sf_command (to, set, &info, sizeof (info));
}

/** Only those formats keep chunks whose names they do not know. */
bool keepsChunks (SNDFILE* file)
{
    SF_INFO info {};
    sf_command (file, SFC_GET_CURRENT_SF_INFO, &info, sizeof (info));
    const auto container = info.format & SF_FORMAT_TYPEMASK;
    return container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX || container == SF_FORMAT_RF64
           || container == SF_FORMAT_AIFF || container == SF_FORMAT_CAF;
}

void copyChunk (SNDFILE* from, SNDFILE* to, const std::string& name)
{
    SF_CHUNK_INFO chunk {};
    std::memcpy (chunk.id, name.data(), name.size());
    chunk.id_size = static_cast<unsigned int> (name.size());

    auto* const found = sf_get_chunk_iterator (from, &chunk);
    if (found == nullptr || sf_get_chunk_size (found, &chunk) != SF_ERR_NO_ERROR)
        return;

    std::vector<char> data (chunk.datalen);
    chunk.data = data.data();
    if (sf_get_chunk_data (found, &chunk) == SF_ERR_NO_ERROR)
        sf_set_chunk (to, &chunk);
}
} // namespace

void copySoundMetadata (SNDFILE* from, SNDFILE* to)
{
    copyStrings (from, to);
    copyInfo<SF_BROADCAST_INFO> (from, to, SFC_GET_BROADCAST_INFO, SFC_SET_BROADCAST_INFO);
    copyInfo<SF_CART_INFO> (from, to, SFC_GET_CART_INFO, SFC_SET_CART_INFO);
    copyInfo<SF_CUES> (from, to, SFC_GET_CUE, SFC_SET_CUE);
    copyInfo<SF_INSTRUMENT> (from, to, SFC_GET_INSTRUMENT, SFC_SET_INSTRUMENT);

    if (keepsChunks (from) && keepsChunks (to))
        for (const auto* name : { "axml", "iXML" })
            copyChunk (from, to, name);
}

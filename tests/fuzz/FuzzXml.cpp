// Any bytes as a host's block or a preset file, through the check, the parser and the cleaning of the tree.

#include "fuzz/Require.h"
#include "state/CheckedXml.h"
#include "state/StateBlock.h"
#include "state/StateTree.h"

#include <cstdint>

using namespace tessarin;

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const std::string_view text (reinterpret_cast<const char*> (data), size);
    const auto isBlock = text.substr (0, 4) == "VC2!";
    const auto xml = isBlock ? parseStateBlock (data, static_cast<int> (size)) : parseCheckedXml (text);

    if (xml == nullptr)
        return 0;

    StateTree::normaliseTag (*xml);
    auto tree = juce::ValueTree::fromXml (*xml);
    StateTree::sanitise (tree);

    juce::MemoryOutputStream written;
    tree.createXml()->writeTo (written);
    const auto again =
        parseCheckedXml ({ static_cast<const char*> (written.getData()), written.getDataSize() });
    require (again != nullptr, "what was read can be read again when written");
    require (juce::ValueTree::fromXml (*again).isEquivalentTo (tree), "and is the same");
    return 0;
}

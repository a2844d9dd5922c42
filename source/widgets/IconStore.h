#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <map>
#include <memory>
#include <utility>

namespace luna
{

/** The icons of all windows, each read once and coloured once: many controls show the same, and so does the next
    window. JUCE deletes it when the last plug-in goes. Message thread. */
class IconStore final : private juce::DeletedAtShutdown
{
public:
    ~IconStore() override { clearSingletonInstance(); }

    JUCE_DECLARE_SINGLETON_SINGLETHREADED (IconStore, false)

    /** `svgData` stays where it is, and its black becomes the colour. The icon lives as long as the store. */
    [[nodiscard]] const juce::Drawable& get (const char* svgData, size_t svgSize, juce::Colour colour);

private:
    IconStore() = default;

    /** As they are, by their data. */
    std::map<const char*, std::unique_ptr<juce::Drawable>> icons;

    std::map<std::pair<const char*, juce::uint32>, std::unique_ptr<juce::Drawable>> colouredIcons;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (IconStore)
};

} // namespace luna

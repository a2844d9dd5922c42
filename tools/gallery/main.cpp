// orvo-gallery OUTDIR: draws every widget in every state, in the four themes and at scale 1 and 2, off
// screen, as OUTDIR/<theme>/<widget>.png and <widget>@2x.png.

#include "common/AtomicFile.h"
#include "Exhibits.h"
#include "look/TessarinLookAndFeel.h"
#include "look/ThemeResolver.h"
#include "scratch/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>

namespace
{
bool writePng (const juce::Image& image, const juce::File& file)
{
    juce::MemoryOutputStream png;
    return file.getParentDirectory().createDirectory().wasOk()
           && juce::PNGImageFormat().writeImageToStream (image, png)
           && replaceFileAtomically (file, png.getData(), png.getDataSize());
}

bool drawGallery (const juce::File& folder)
{
    tessarin::DLAF shared;

    for (const auto& theme : tessarin::ThemeResolver::getEmbeddedThemeNames())
    {
        shared.lookAndFeel.setTheme (theme);

        // A plug-in of its own, so that one theme's pictures leave no settings to the next.
        OrvoAudioProcessor processor;
        const auto sheets = makeSheets (processor);

        for (const auto& sheet : sheets)
        {
            for (const auto scale : { 1, 2 })
            {
                const auto name = sheet.name + (scale == 1 ? "" : "@2x") + ".png";
                const auto file = folder.getChildFile (theme).getChildFile (name);

                if (! writePng (renderSheet (sheet, static_cast<float> (scale)), file))
                {
                    std::fprintf (stderr, "error: cannot write %s\n", file.getFullPathName().toRawUTF8());
                    return false;
                }
            }
        }

        std::printf ("%s: %d sheets\n", theme.toRawUTF8(), static_cast<int> (sheets.size()));
    }

    return true;
}
} // namespace

int main (int argc, char** argv)
{
    if (argc != 2 || juce::String (argv[1]).startsWithChar ('-'))
    {
        std::fprintf (stderr, "usage: orvo-gallery OUTDIR\n");
        return 2;
    }

    forbidDisplay();
    const TemporaryHome home;
    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    const auto folder =
        juce::File::getCurrentWorkingDirectory().getChildFile (juce::String::fromUTF8 (argv[1]));
    return drawGallery (folder) ? EXIT_SUCCESS : EXIT_FAILURE;
}

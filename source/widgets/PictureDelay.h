#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <vector>

namespace luna
{

class PixelPicture;

/** Puts off the pictures of a window while its size changes.

    A picture that is shown once costs twice what is in it: it is painted, and then copied. So what gets another size is
    painted where it stands, until the window has stood for a while. Then its pictures are made, some in each frame, so
    that none takes long. The window's component derives from this. Message thread.
*/
class PictureDelay : private juce::Timer
{
public:
    ~PictureDelay() override;

    /** Whether the picture, which has to be made, is only to be painted for now. If so, its component is repainted when
        its time has come. */
    [[nodiscard]] bool putsOff (PixelPicture&, int numPixels);

    /** It has been made, or is not needed any more. */
    void forget (const PixelPicture&);

protected:
    /** From now on, for a while. */
    void putOffPictures();

private:
    struct Waiting
    {
        PixelPicture* picture;
        int numPixels;
    };

    void timerCallback() override;

    /** In the order in which they were painted, so that one comes before those inside it. */
    std::vector<Waiting> waiting;

    bool hasSettled = false;
};

} // namespace luna

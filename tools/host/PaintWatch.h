#pragma once

#include <juce_graphics/juce_graphics.h>

#include <memory>

/** What the X server paints of the module's window, as it tells a connection of our own (its DAMAGE extension). One
    thread at a time. */
class PaintWatch
{
public:
    /** Throws if there is no server, or none that tells. */
    PaintWatch();
    ~PaintWatch();

    struct Paints
    {
        juce::int64 count = 0, pixels = 0;
    };

    /** From now on, hears of the module's window in this one of the host's, and forgets what was before. Throws if it
        holds none. */
    void begin (unsigned long hostWindow);

    /** Takes in what the server has told, after at most so long a wait for more. */
    void listen (int milliseconds);

    /** Since `begin` or the last call. A paint is one drawing command; pixels count as often as they are painted. */
    [[nodiscard]] Paints takePaints();

    /** Whether each pixel of the window has been painted since `begin`. */
    [[nodiscard]] bool hasPicture() const;

    /** How long ago the last paint was heard of, or `begin` was called. */
    [[nodiscard]] double getQuietSeconds() const;

    /** Whether the window is mapped, and so is all that it stands in. */
    [[nodiscard]] bool isOnScreen() const;

private:
    struct Connection;

    void end();

    std::unique_ptr<Connection> connection;
    Paints paints;
    juce::RectangleList<int> painted;
    juce::Rectangle<int> whole;
    double lastPaint = 0.0;
};

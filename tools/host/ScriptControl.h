#pragma once

#include "OpenSession.h"

#include <vector>

/** Lets another program drive an open session, a line at a time, over the standard streams. Message thread.

    Commands, each answered with "ok", which may have more behind it, or "failed" and the reason:

      get ID            the parameter's value from 0 to 1 and its text
      set ID=VALUE      as the option --set
      preset NAME       as the option --preset
      save FILE         writes the module's state; load FILE restores one
      size WxH          as the option --size
      stop, start       the audio
      automate          sets parameters on the audio thread as fast as the window can follow
      close, open       the editor's window, which is gone with the line "closed"
      window            its ID and the view's size
      look X Y W H      a number that stands for the pixels of this area of the view
      picture FILE      writes the view's pixels as PNG
      quit

    Between them come, as they happen, "begin ID", "value ID NUMBER" and "end ID" for what the module tells its
    host, and "ready ID WxH" at the start. The end of the input ends the session.
*/
class ScriptControl final
{
public:
    explicit ScriptControl (OpenSession& session);
    ~ScriptControl();

private:
    struct Watch;

    void inputReady();
    void obey (const juce::String& line);
    [[nodiscard]] juce::String answer (const juce::String& command, const juce::String& rest);
    [[nodiscard]] juce::String describeWindow();
    [[nodiscard]] juce::String look (const juce::String& area);

    OpenSession& session;
    std::vector<std::unique_ptr<Watch>> watches;
    juce::MemoryOutputStream pending;

    JUCE_DECLARE_NON_COPYABLE (ScriptControl)
};

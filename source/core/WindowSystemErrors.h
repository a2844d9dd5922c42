#pragma once

namespace tessarin
{

/** Errors on our own connection to the X server, which end here and never reach the host.

    JUCE asks the server about windows of other programs, such as the one that has the focus, and any of them may be
    gone before the question arrives. The server's answer is an error, and the X library hands it to the one error
    handler of the process. A program made with JUCE brings a handler that ignores it; in a plug-in the handler is the
    host's, and most end the process.

    The handler of the process is left alone. The X library first asks handlers that hang on the connection itself, as
    extensions use them: one of ours hangs on JUCE's connection, takes every error and counts it. So other connections,
    other plug-ins and whatever the host does with its own handler are not concerned, and nothing is left behind: the
    connection is the module's own and is closed with it. A connection that breaks stays the host's affair.
*/
namespace WindowSystemErrors
{

/** Hangs the handler on the connection, unless it hangs there or there is no connection. Called for every plug-in and
    every window, since JUCE opens the connection anew after the last plug-in of the process is gone. Any thread. */
void keepFromHost();

/** The errors since the last call, of all windows of the process. Any thread. */
[[nodiscard]] int takeCount();

} // namespace WindowSystemErrors

} // namespace tessarin

#pragma once

/// How a job of the printing program ended.
enum class JobResult
{
    Done,       ///< all of it, and nothing was found
    SomeFailed, ///< some documents were left out, or there are findings
    NotDone     ///< nothing could be done at all
};

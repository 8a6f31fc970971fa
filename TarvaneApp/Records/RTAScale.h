// The level axis of a spectrum: 0 to 140 dB SPL, or -140 to 0 dBFS.
#pragma once

namespace TarvaneApp {

enum class RTAScale { spl, dbfs };

}  // namespace TarvaneApp

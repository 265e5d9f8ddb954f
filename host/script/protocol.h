// protocol.h: what passes between scriptProcess and the program `orv-script`.
//
// In, until the end of the input, one JSON object:
//   script       the text to run
//   matchNames   of the parameters, by index from 1
//   kinds        likewise: "number", "switch", "layer", "mask", "list" or "none"
//   ranges       likewise: [low, high] or null
//   pictures     how many items of the project are no compositions
//   compositions [[{masks, effects: [{name, values, keyed}]}]]: layers of each; `values` by index
//                from 1 (a list of numbers each), null for the effects of others; `keyed` indices
// Out, one JSON object:
//   error        null, or what the script did not catch
//   set          [[composition, layer, effect, parameter, [numbers]]], positions from 0
#pragma once

namespace orv {

/// Exit code of `orv-script` when the script asks for more memory than it may have.
inline constexpr int kScriptOutOfMemory = 3;
inline constexpr int kScriptMegabytes = 64;
inline constexpr int kScriptSeconds = 5;

}  // namespace orv

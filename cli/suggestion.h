// What a person may have meant by a word that is none of those that can stand there.
#pragma once

#include <string>
#include <vector>

namespace cli {

// ": did you mean 'measure'?" without the colon; empty where nothing is near. Case does not count. Near are,
// the better ones alone: what the word abbreviates, what differs from it in at most a third of the letters
// (one more, one less, another, two exchanged), what the word goes on from ("--frequncy", "--freq"). "volume"
// is near "sys_set/volume", too. Nothing is near a word that is one of those known.
std::string didYouMean(const std::string& word, const std::vector<std::string>& known);

} // namespace cli

#pragma once

class TavDataStore;

// The characters of all texts and data that a store's entries hold, in bytes; what several of them
// share counts once.
double bytesOfTexts(const TavDataStore &store);

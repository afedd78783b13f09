// One entry of a Speechtext's record vector.
#pragma once

class SpeechtextAttrs;

// Copied shallowly: the Speechtext whose vector holds the entry owns the object.
struct SpeechtextAttrsRecord {
    int position = 0;  // byte offset into the text, from 0 up to and including its length
    SpeechtextAttrs* attrs = nullptr;
};

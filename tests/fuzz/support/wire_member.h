// A member of an object of a document on the wire, as the schemas have it.
#pragma once

struct WireMember {
    const char* object; // its path: "system/ports[]/poe", "" for the document
    const char* key;
    const char* opens;  // "{}", "[]", or "" for a value
    const char* values; // a JSON array of values at and beside the ends of its range
};

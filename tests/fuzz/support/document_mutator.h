// Changes a JSON document as a document: members come, go, move, are there twice and have other
// values, most of them such as the wire knows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "tests/fuzz/support/wire_member.h"

// For LLVMFuzzerCustomMutator: what it is given, and what the members of a document may be. A text
// that is no JSON, and now and then one that is, is changed byte by byte.
std::size_t mutate_document(
    std::span<const WireMember> members, std::uint8_t* data, std::size_t size, std::size_t most,
    unsigned seed);

// For LLVMFuzzerCustomCrossOver: the first document with a part of the second at its place.
std::size_t cross_documents(
    const std::uint8_t* one, std::size_t one_size, const std::uint8_t* other,
    std::size_t other_size, std::uint8_t* out, std::size_t most, unsigned seed);

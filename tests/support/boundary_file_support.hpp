/// \file
/// Boundary files written by a test, and all results of reading one.
#pragma once

#include "boundary/boundary_set.hpp"

#include "support/boundary_support.hpp"
#include "support/expected_calls_support.hpp"

#include <string>
#include <vector>

namespace vadelclip {

struct Reading {
    bool succeeded = false;
    BoundarySet set;
    std::string console;
    Calls calls;
};

Reading readBoundaryAt(const std::string& path);

/// Reads a file that holds these bytes.
Reading readBoundaryBytes(const std::string& bytes);

/// Returns a file with this content inside the elements that enclose the groups.
std::string inModel(const std::string& content);

/// Returns a file with this content in a group of type "boundaries".
std::string inBoundaries(const std::string& content);

/// A valid polygon and its outline.
const std::string triangleElement =
    R"(<polygon id="1"><point x="0" y="1"/><point x="5" y="2"/><point x="3" y="4"/></polygon>)";
const Outline triangle = {{0, 1}, {5, 2}, {3, 4}};

/// Expects success without a message and exactly these polygons.
void expectRead(const std::vector<Outline>& outlines, const std::string& bytes);

/// Expects exactly this one error on both channels. Does not check the set.
void expectFailed(const std::string& error, const Reading& reading);

/// Expects exactly this one error and an empty set.
void expectFailedEmpty(const std::string& error, const std::string& path);

/// Expects that the bytes are not valid XML or contain no element.
void expectNotFound(const std::string& bytes);

/// Expects that an element that encloses the groups is missing.
void expectNoModel(const std::string& bytes);

} // namespace vadelclip

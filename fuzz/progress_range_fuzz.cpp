/// \file
/// `tenthsAt` and `firstDueStep` against their rules, written a second time here, step by step. The input is the range's
/// start, end (eight bytes each) and number of steps (two bytes), the tenths written so far (two bytes), and two steps
/// (four bytes each).

#include "fuzz_target.hpp"

#include "processmessage/progress_range.hpp"

#include <algorithm>
#include <limits>

namespace vadelclip {

namespace {

std::int32_t number(InputBytes& input, int byteCount) {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 8 * byteCount; shift += 8) {
        result |= std::uint32_t{input.byte()} << shift;
    }
    return static_cast<std::int32_t>(result);
}

/// What `tenthsAt` is to give. It shares the definition of a step's percentage with the source, whose operations round
/// one by one and in this order, but no line and no function. The tenths are found by comparing: the last whole tenth that
/// is not beyond the percentage, tried bit by bit. Nothing is rounded down, converted from a double or clamped, and the
/// comparisons are exact.
int plainTenthsAt(const ProgressRange& range, int step) {
    const bool rises = range.startPercent < range.endPercent; // of what is no number this does not hold either
    if (!rises || range.endPercent - range.startPercent > std::numeric_limits<double>::max() || range.stepCount < 1) {
        return noTenths;
    }
    const double walked = (range.endPercent - range.startPercent) * static_cast<double>(step);
    const double percent = range.startPercent + walked / static_cast<double>(range.stepCount);
    // A product that rounds to a whole tenth is this tenth.
    const double tenths = 10.0 * percent;
    int reached = noTenths;
    for (int more = 512; more > 0; more /= 2) {
        if (reached + more <= finishedTenths && static_cast<double>(reached + more) <= tenths) {
            reached += more;
        }
    }
    return reached;
}

int firstDueStepByScan(const ProgressRange& range, int writtenTenths) {
    for (int step = 0; step <= range.stepCount; ++step) {
        const int tenths = plainTenthsAt(range, step);
        if (tenths > writtenTenths || (step == range.stepCount && tenths == finishedTenths)) {
            return step;
        }
    }
    return noDueStep;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputBytes input(data, size);
    const auto start = std::bit_cast<double>(input.word());
    const auto end = std::bit_cast<double>(input.word());
    const ProgressRange range{start, end, number(input, 2) % 2048 - 8};
    const int writtenTenths = number(input, 2) % (finishedTenths + 2) + noTenths;
    const auto [step, laterStep] = std::minmax({number(input, 4), number(input, 4)});

    requireEqual(firstDueStepByScan(range, writtenTenths), firstDueStep(range, writtenTenths), "first due step");
    // Ranges as large as they come, without the scan.
    for (const ProgressRange& any : {range, ProgressRange{start, end, step}, ProgressRange{start, end, laterStep}}) {
        const int tenths = tenthsAt(any, step);
        requireEqual(plainTenthsAt(any, step), tenths, "tenths at a step");
        requireEqual(plainTenthsAt(any, laterStep), tenthsAt(any, laterStep), "tenths at a later step");
        require(tenths >= noTenths && tenths <= finishedTenths, "tenths out of range");
        require(tenthsAt(any, laterStep) >= tenths, "a larger step shows less");
        const int due = firstDueStep(any, writtenTenths);
        if (due != noDueStep) {
            const bool isLater = plainTenthsAt(any, due) > writtenTenths;
            const bool isEndOfRun = due == any.stepCount && plainTenthsAt(any, due) == finishedTenths;
            require(isLater || isEndOfRun, "nothing is due at the due step");
            require(due == 0 || plainTenthsAt(any, due - 1) <= writtenTenths, "an earlier step is due");
        } else if (any.stepCount != noDueStep) { // the end of so many steps has the same number
            const int last = plainTenthsAt(any, any.stepCount);
            require(last <= writtenTenths && last != finishedTenths, "the last step is due");
        }
    }
    return 0;
}

} // namespace vadelclip

/// \file
/// Compares `tenthsAt` and `firstDueStep` with a second implementation of their rules. The input is the start and the end of
/// the range (eight bytes each), its number of steps (two bytes), the tenths written so far (two bytes), and two steps (four
/// bytes each).

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

/// Returns the expected result of `tenthsAt`. Only the formula of the percentage, with its order of rounding, is that of the
/// source. The result is the last whole tenth that is not above the percentage, found bit by bit with exact comparisons: no
/// rounding, conversion or clamping.
int plainTenthsAt(const ProgressRange& range, int step) {
    const bool rises = range.startPercent < range.endPercent; // false for not-a-number too
    if (!rises || range.endPercent - range.startPercent > std::numeric_limits<double>::max() || range.stepCount < 1) {
        return noTenths;
    }
    const double walked = (range.endPercent - range.startPercent) * static_cast<double>(step);
    const double percent = range.startPercent + walked / static_cast<double>(range.stepCount);
    // A product that rounds to a whole tenth counts as this tenth.
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
    // Ranges of any size, without the scan.
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
        } else if (any.stepCount != noDueStep) { // a range of that many steps ends at the same number
            const int last = plainTenthsAt(any, any.stepCount);
            require(last <= writtenTenths && last != finishedTenths, "the last step is due");
        }
    }
    return 0;
}

} // namespace vadelclip

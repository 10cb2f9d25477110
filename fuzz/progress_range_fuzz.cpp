/// \file
/// `tenthsAt` and `firstDueStep` against their rules, step by step. The input is the range's start, end (eight bytes
/// each) and number of steps (two bytes), the tenths written so far (two bytes), and two steps (four bytes each).

#include "fuzz_target.hpp"

#include "processmessage/progress_range.hpp"

#include <algorithm>

namespace {

std::int32_t number(InputBytes& input, int byteCount) {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 8 * byteCount; shift += 8) {
        result |= std::uint32_t{input.byte()} << shift;
    }
    return static_cast<std::int32_t>(result);
}

int firstDueStepByScan(const ProgressRange& range, int writtenTenths) {
    for (int step = 0; step <= range.stepCount; ++step) {
        const int tenths = tenthsAt(range, step);
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
        require(tenths >= noTenths && tenths <= finishedTenths, "tenths out of range");
        require(tenthsAt(any, laterStep) >= tenths, "a larger step shows less");
        const int due = firstDueStep(any, writtenTenths);
        if (due != noDueStep) {
            require(tenthsAt(any, due) > writtenTenths || due == any.stepCount, "nothing is due at the due step");
            require(due == 0 || tenthsAt(any, due - 1) <= writtenTenths, "an earlier step is due");
        }
    }
    return 0;
}

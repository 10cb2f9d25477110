/// \file
/// Writing to Vadelwatch's own standard output and standard error, whose readers may go away at any time.
#pragma once

#include <string_view>

/// A descriptor that is written to until its reader is gone; from then on, every text is dropped.
class OwnOutput {
public:
    explicit OwnOutput(int outputDescriptor) : descriptor(outputDescriptor) {}

    /// Writes all of the text. A slow reader is waited for.
    void write(std::string_view text);

private:
    int descriptor;
    bool gone = false;
};

/// Opens closed standard descriptors on the null device, and makes writing to a vanished reader an error instead of the
/// end of the process. Before any other file is opened.
void guardOwnOutput();

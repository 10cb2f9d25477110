"""The expected messages of a run, as lines of the recording message layer and as JSON Lines of the real tool."""
import json

USAGE = "Usage: Vadelclip <input directory path> <output directory name> <boundary file path>"
FAILED = "Clipping of elevation data with model boundaries failed."
FINISHED = "Finished clipping elevation data with model boundaries"
CLIPPING = "Clipping elevation data..."
BAD_FIRST_CHARACTER = "First character of node file must be one of x,X"
BAD_SEPARATOR = "ERROR: separator must be either semikolon, comma, space or tab"
BAD_SHAPE = ('ERROR: Using the xyz format, the first header line must be one of x;y;z , X;Y;Z , x;y;z;g , '
             'Y;Y;Z;G , while the separator (e.g. ";" is variable')


def number(value):
    return ("%.17g" % value).replace("-nan", "nan")


def escaped(text):
    return text.replace("\\", "\\\\").replace("\n", "\\n")


def recorded(*parts, pipeMode=False):
    """Returns all lines of one process. Each part is a list of lines."""
    return [f"MessageSender {int(pipeMode)}", *(line for part in parts for line in part), "~MessageSender"]


def errorMessage(text):
    return [f"ErrorMessage 2 {escaped(text)}", "end ErrorMessage"]


def stateMessage(text=CLIPPING):
    return [f"StateMessage 1 true {escaped(text)}", "end StateMessage"]


def failedMessage(text=FAILED):
    return [f"FailedMessage 1 {escaped(text)}", "end FailedMessage"]


def finishMessage(text=FINISHED):
    return [f"FinishMessage 1 {escaped(text)}", "end FinishMessage"]


def progressRange(start, end, steps, values):
    return [f"ProgressMessage {number(start)} {number(end)} {steps}",
            *(f"OnProgress {value} false" for value in values), "end ProgressMessage"]


def filePass(lineCount, linesDone=0, totalLines=None, state=CLIPPING):
    """Returns the lines of one node file: the state, then its range with a step before each line, counted from 0."""
    totalLines = lineCount if totalLines is None else totalLines
    lineInPercent = 100.0 / totalLines if totalLines != 0 else float("inf")
    start = lineInPercent * float(linesDone)
    end = (lineCount + float(linesDone)) * lineInPercent
    return stateMessage(state) + progressRange(start, end, lineCount, range(lineCount))


def filePasses(*lineCounts):
    """Returns the lines of all node files of a run, in the order of the passes."""
    lines = []
    for index, lineCount in enumerate(lineCounts):
        lines += filePass(lineCount, sum(lineCounts[:index]), sum(lineCounts))
    return lines


def closingRange():
    return progressRange(1.0, 100.0, 100, [100])


def finishedRun(*lineCounts, pipeMode=False):
    return recorded(filePasses(*lineCounts), closingRange(), finishMessage(), pipeMode=pipeMode)


def failedRun(*errorTexts, pipeMode=False):
    return recorded(*map(errorMessage, errorTexts), failedMessage(), pipeMode=pipeMode)


# JSON Lines. The order of the keys matters.

def jsonLine(**message):
    return json.dumps(message, ensure_ascii=False, separators=(",", ":"))


def jsonError(text):
    return jsonLine(type="error", level=2, text=text)


def jsonState(text=CLIPPING):
    return jsonLine(type="state", level=1, text=text, active=True)


def jsonProgress(*percents):
    return [jsonLine(type="progress", percent=percent) for percent in percents]


def jsonFinish(text=FINISHED):
    return jsonLine(type="finish", level=1, text=text)


def jsonFailed(text=FAILED):
    return jsonLine(type="failed", level=1, text=text)


def jsonFailedRun(*errorTexts):
    return [*map(jsonError, errorTexts), jsonFailed()]


def jsonFinishedRun(*percents):
    """Returns all lines of a run over one file."""
    return [jsonState(), *jsonProgress(*percents), jsonFinish()]

"""What a running program holds, and whether it comes to hold more and more."""

import os
import pathlib


def sample(pid):
    """Resident memory in kB and open files of the process; nothing when it has ended."""
    try:
        status = pathlib.Path(f"/proc/{pid}/status").read_text()
        memory = next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS:"))
        return memory, len(os.listdir(f"/proc/{pid}/fd"))
    except (FileNotFoundError, ProcessLookupError, StopIteration):
        return None


def judge(samples, allowed_kb):
    """What the samples tell, and the reason why they are too much, or nothing.

    Caches fill in the first third. The last third may hold no more files than the second one, and no more memory than
    allowed beyond it.
    """
    third = len(samples) // 3
    if third == 0:
        return "", "was over before it could be watched"
    parts = samples[third:2 * third], samples[2 * third:]
    memory = [max(each[0] for each in part) for part in parts]
    # A file is open for a moment while it is read or written; what stays open is open in every sample.
    files = [min(each[1] for each in part) for part in parts]
    told = f"memory {memory[0]} then {memory[1]} kB, files {files[0]} then {files[1]}"
    if memory[1] > memory[0] + allowed_kb:
        return told, f"memory grew by {memory[1] - memory[0]} kB"
    if files[1] > files[0]:
        return told, f"open files grew from {files[0]} to {files[1]}"
    return told, None

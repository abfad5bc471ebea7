"""Runs a program and tells what it took: seconds of the processor, and megabytes at most.

process_times.py PROGRAM [ARGUMENT...]

What the program writes is thrown away, its errors come through, and so does its exit status.
"""
import resource
import subprocess
import sys


def main():
    status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL).returncode
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)
    sys.exit(status)


if __name__ == "__main__":
    main()

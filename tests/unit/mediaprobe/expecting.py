"""What the checks of mediaprobe count: expect() for each thing, finish() in the end."""
import sys

passed = 0
failed = 0


def expect(what, good):
    global passed, failed
    if good:
        passed += 1
    else:
        failed += 1
        print("FAILED", what)


def finish():
    """Prints the count and ends with 1 when something has failed."""
    print(f"{passed} passed, {failed} failed")
    sys.exit(1 if failed else 0)

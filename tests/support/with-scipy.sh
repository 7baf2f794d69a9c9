#!/bin/sh
# Runs a Python program under the first Python that has SciPy. Without one a test counts as skipped (77).
for python in python3 /usr/bin/python3; do
    if "$python" -c "import numpy, scipy" 2>/dev/null; then
        exec "$python" "$@"
    fi
done
echo "Skipped: no Python with NumPy and SciPy here (Debian: python3-scipy)"
exit 77

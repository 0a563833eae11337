#!/bin/bash
# callhomeutils.pl: the helper program of older groups. It is bash in spite of its name, which callers look for.
source "${BASH_SOURCE[0]%/*}/lab-common.bash"
log_call "$@"

echo "callhomeutils: $*"

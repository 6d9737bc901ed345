# shellcheck shell=bash
# Named, timed stages for scripts that run many things one after the other. The first failure ends
# the script with status 1 and says which stage it was. Sourced, by scripts under `set -e`.

stageName=
stageStart=0

# stage NAME COMMAND...: a heading, the command, its time. The command keeps `set -e`, so that a
# function fails at its first failing line.
stage() {
  stageName=$1
  stageStart=$SECONDS
  shift
  echo
  echo "== $stageName"
  "$@"
  echo "== $stageName: $((SECONDS - stageStart)) s"
  stageName=
}

# Said last, whatever went before.
reportEnd() {
  local status=$?
  ((status)) || return 0
  if [[ -n $stageName ]]; then
    echo >&2
    echo "FAILED: $stageName (after $((SECONDS - stageStart)) s)" >&2
  fi
  exit 1
}
trap reportEnd EXIT

#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# A Slurm cluster on this machine, for trying the service with it: one controller and two nodes of one
# processor each, on loopback, all of it in one folder. Needs root and the packages slurm-wlm and munge.
# Usage: cluster.sh start FOLDER | cluster.sh stop FOLDER
set -euo pipefail
folder=$(realpath -m "${2?the folder is missing}")
conf=$folder/slurm.conf

start() {
    mkdir -p "$folder"/{state,n1,n2,munge}
    chmod 755 "$folder"
    dd if=/dev/urandom of="$folder/munge/key" bs=128 count=1 status=none
    chmod -R u=rwX,go= "$folder/munge"
    chmod 755 "$folder/munge"
    munged --force --key-file="$folder/munge/key" --socket="$folder/munge/socket" --pid-file="$folder/munge/pid" \
        --log-file="$folder/munge/log" --seed-file="$folder/munge/seed"
    cat >"$conf" <<CONF
ClusterName=try
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=16817
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket=$folder/munge/socket
CredType=cred/munge
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/%n
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/%n/slurmd.pid
SlurmctldLogFile=$folder/slurmctld.log
SlurmdLogFile=$folder/%n/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
SwitchType=switch/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
# A node that does not answer is given up after a few seconds, and its jobs end.
SlurmdTimeout=10
UnkillableStepTimeout=10
MessageTimeout=5
ReturnToService=2
NodeName=n[1-2] NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 Port=[17001-17002] CPUs=1 State=UNKNOWN
PartitionName=all Nodes=n[1-2] Default=YES State=UP
CONF
    slurmctld -f "$conf"
    for node in n1 n2; do slurmd -f "$conf" -N $node; done
}

# By the process ids that the daemons have written down.
stop() {
    local file
    for file in "$folder"/n?/slurmd.pid "$folder/slurmctld.pid" "$folder/munge/pid"; do
        [[ -s $file ]] && kill "$(<"$file")" 2>/dev/null || true
    done
}

case ${1-} in
start) start ;;
stop) stop ;;
*)
    sed -n '4,6s/^# //p' "$0" >&2
    exit 2
    ;;
esac

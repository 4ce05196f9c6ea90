# Environment of Veltrane, to be sourced by a shell.

# Drives of paths such as D:\Out.
export VORNAK_DRIVES="D=${PWD}/build/run"
# The machine-wide registry, an export file; /etc/vornak/registry.reg without this variable.
export VORNAK_REGISTRY="${PWD}/examples/config/registry.reg"
# An option of the section ROOT that neither command line nor configuration gives is taken from the environment.
export data='D:\Out'

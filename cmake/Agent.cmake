# The agent's layers in link order, highest first. Static libraries name each other in both
# directions through the ground floor, so they are linked as one group.
set(VX_AGENT_LAYERS vx_core vx_transport vx_sections vx_driver vx_json vx_ground)

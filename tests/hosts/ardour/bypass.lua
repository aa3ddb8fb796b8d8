-- bypass.lua FOLDER
-- Loads the session, bypasses the plug-in with the host's own button, and saves.
local folder = arg[1]
local session = assert(load_session(folder, "session"))
local effect = session:route_by_name("stereo"):to_track():nth_plugin(0)
effect:to_insert():deactivate()
assert(session:save_state("") == 0)
effect, session = nil, nil
collectgarbage()
close_session()
print("\nend of script")

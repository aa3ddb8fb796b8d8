-- insert.lua FOLDER RATE [INDEX=VALUE ...]
-- A new session with one stereo track that has the plug-in on it, its
-- parameters set.
local folder, rate = arg[1], tonumber(arg[2])
local session = assert(create_session(folder, "session", rate))
local route
for track in session:new_audio_track(2, 2, nil, 1, "stereo", ARDOUR.PresentationInfo.max_order,
                                     ARDOUR.TrackMode.Normal, true):iter() do
  route = track
end
local effect = ARDOUR.LuaAPI.new_plugin(session, "Dravik Mirelon", ARDOUR.PluginType.LXVST, "")
assert(not effect:isnil(), "the plug-in could not be made")
assert(route:add_processor_by_index(effect, 0, nil, true) == 0)
for i = 3, #arg do
  local index, value = arg[i]:match("^(%d+)=(.*)$")
  assert(ARDOUR.LuaAPI.set_processor_param(effect, tonumber(index), tonumber(value)))
end
assert(session:save_state("") == 0)
route, effect, session = nil, nil, nil
collectgarbage()
close_session()
print("\nend of script")

// SPDX-License-Identifier: Apache-2.0
// Which pairs a rule set tests and by how much it grows each body. Written for the sample alone,
// from the published tables, so that it can disagree with the checker.

/** The specialty / major category / minor category that each kind of component is meant to get. */
export const CATEGORY = {
  exteriorWall: ['土建', '墙', '砼外墙'],
  brickWall: ['土建', '墙', '砖内墙'],
  partition: ['土建', '墙', '间壁墙'],
  column: ['土建', '柱', '砼柱'],
  beam: ['土建', '梁', '框架梁'],
  secondaryBeam: ['土建', '梁', '次梁'],
  steelBeam: ['土建', '几何构件', '钢梁'],
  slab: ['土建', '楼梯楼板', '现浇板'],
  flight: ['土建', '楼梯楼板', '梯段'],
  door: ['土建', '门.窗.洞', '门'],
  window: ['土建', '门.窗.洞', '窗'],
  supplyDuct: ['暖通', '风管', '送风管'],
  returnDuct: ['暖通', '风管', '回风管'],
  exhaustDuct: ['暖通', '风管', '排风管'],
  freshDuct: ['暖通', '风管', '新风管'],
  chilledPipe: ['暖通', '水管', '冷供水管'],
  airTerminal: ['暖通', '风口', '风口'],
  airEquipment: ['暖通', '设备', '空调设备'],
  tray: ['电气', '电缆桥架', '桥架'],
  board: ['电气', '设备', '配电箱'],
  trunking: ['弱电', '线槽桥架', '线槽'],
  coldPipe: ['给排水', '管道', '给水管'],
  hotPipe: ['给排水', '管道', '热给水管'],
  sewagePipe: ['给排水', '管道', '污水管'],
  wastePipe: ['给排水', '管道', '废水管'],
  rainPipe: ['给排水', '管道', '雨水管'],
  basin: ['给排水', '卫生器具', '洗脸盆'],
  sprinklerPipe: ['消防', '管网', '喷淋管'],
  sprinklerHead: ['消防', '喷头', '喷头'],
};

/** Major categories of members that a service run keeps its single clearance from. */
const STRUCTURE = new Set(['墙', '柱', '梁', '楼梯楼板', '几何构件']);

const RUN_KIND = new Map([
  ['supplyDuct', 1], ['returnDuct', 1], ['exhaustDuct', 1], ['freshDuct', 1],
  ['tray', 2], ['trunking', 2],
  ['sewagePipe', 3], ['wastePipe', 3], ['rainPipe', 3],
  ['coldPipe', 4], ['chilledPipe', 4], ['sprinklerPipe', 4],
  ['hotPipe', 5],
]);

const runKind = (kind) => RUN_KIND.get(kind) ?? 0;
const isStructure = (kind) =>
  CATEGORY[kind][0] === '土建' && STRUCTURE.has(CATEGORY[kind][1]);

const SINGLE_CLEARANCE = [0, 200, 50, 50, 50, 50];

/** Spacing of two runs: 400 between a drainage pipe and a pressure or hot-water pipe, else 150. */
function spacing(kindA, kindB) {
  const drains = [kindA, kindB].filter((kind) => kind === 3).length;
  const pressed = [kindA, kindB].filter((kind) => kind >= 4).length;
  return drains === 1 && pressed === 1 ? 400 : 150;
}

const CLEARANCE = { type: 1, tolerance: 0 };
const TOLERANCE = { type: 2, tolerance: 2 };

/**
 * The rule sets that the expected list is worked out for. `scope` says which pairs are tested
 * at all, `mode` how each kind of component is tested.
 */
export const RULE_SETS = {
  builtin: {
    text: 'Every kind against every kind of the other specialties: tolerance 2 mm; structural ' +
      'members (walls, columns, beams, slabs, flights) in clearance mode, so that service runs ' +
      'keep their single clearance from them.',
    scope: 'otherSpecialty',
    mode: (kind) => (isStructure(kind) ? CLEARANCE : TOLERANCE),
  },
  spacing: {
    text: 'Every kind against every kind of the other specialties: all services in clearance ' +
      'mode, so that runs also keep their spacing from each other; all else tolerance 2 mm.',
    scope: 'otherSpecialty',
    mode: (kind) => (CATEGORY[kind][0] === '土建' ? TOLERANCE : CLEARANCE),
  },
  tolerance: {
    text: 'Every kind against every kind, its own included: tolerance 2 mm on both sides, so ' +
      'that an overlap of 4 mm passes.',
    scope: 'everything',
    mode: () => TOLERANCE,
  },
};

/** Body offsets of a tested pair, negative where a body shrinks. */
function offsets(kindA, modeA, kindB, modeB) {
  const shrink = (mode) => (mode.type === 2 ? -mode.tolerance : 0);
  const runA = runKind(kindA);
  const runB = runKind(kindB);
  const spaced = (kind) => isStructure(kind) || runKind(kind) > 0;
  const clearance = modeA.type === 1 || modeB.type === 1;
  if (!clearance || !spaced(kindA) || !spaced(kindB)) return [shrink(modeA), shrink(modeB)];
  if (runA > 0 && runB > 0) {
    const half = Math.floor(spacing(runA, runB) / 2);
    return [half, half];
  }
  return [runA > 0 ? SINGLE_CLEARANCE[runA] : 0, runB > 0 ? SINGLE_CLEARANCE[runB] : 0];
}

/** Offsets for two components under a rule set, or null when the pair is not tested. */
export function pairOffsets(ruleSet, a, b) {
  const apart = CATEGORY[a.kind][0] !== CATEGORY[b.kind][0];
  if (ruleSet.scope === 'otherSpecialty' && !apart) return null;
  return offsets(a.kind, ruleSet.mode(a.kind), b.kind, ruleSet.mode(b.kind));
}

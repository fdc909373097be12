#pragma once

/// The records of the library, field by field. A record with a list has a class but no dtype.

#include <scanline/scanline.h>
#include "fields.h"

namespace binding {

SCANLINE_RECORD(STesk3DPoint, x, y, z);
SCANLINE_RECORD(STesk2DPoint, x, y);
SCANLINE_RECORD(STesk2DPointD, x, y);
SCANLINE_RECORD(STesk3DPosition, nPointIdx, pt3D);
SCANLINE_RECORD(STeskXYZRGBDPoint, x, y, z, nRGB);
SCANLINE_RECORD(STeskRangeD, min, max);
SCANLINE_RECORD(STesk3DRangeD, xRange, yRange, zRange);
SCANLINE_RECORD(STeskRect, left, right, top, bottom);
SCANLINE_RECORD(SQO_2DValueI, x, y, value, valueD, tag);
SCANLINE_RECORD(SQO_intPair, first, second, third);
SCANLINE_RECORD(SQO_RUN, start, len, value);
SCANLINE_RECORD(SJU_pointCloudPara, xRange, yRange, zRange, scanLineStep, ptStep);
SCANLINE_RECORD(SQO_planeCalibPara, levelMatrix, planeHeight, invLevelMatrix);
SCANLINE_RECORD(SQO_EulerAngles, roll, pitch, yaw);

SCANLINE_RECORD(SQO_basicFeature1D, featureType, jumpPos2D, jumpPos, featureValue);
SCANLINE_RECORD(SQO_basicFeatureGap, lineIdx, reserved1, gapStart, gapEnd, reserved2);
SCANLINE_RECORD(
    SJU_segFeature, lineIdx, startPtIdx, endPtIdx, featureType, startPt, endPt, segValue);
SCANLINE_RECORD(
    SQO_featureSemiCircle, segState, lineIdx, startPtIdx, endPtIdx, midPtIdx, midPt, width, height);
SCANLINE_RECORD(SQO_lineFeature, lineIdx, features, endings);
SCANLINE_RECORD(SQO_featureTree,
                treeState,
                treeType,
                sLineIdx,
                eLineIdx,
                treeValue,
                xRange,
                yRange,
                treeNodes,
                anchorNode);
SCANLINE_RECORD(SQO_gapFeatureTree,
                treeState,
                treeType,
                sLineIdx,
                eLineIdx,
                treeValue,
                xRange,
                yRange,
                treeNodes,
                anchorNode);
SCANLINE_RECORD(SJU_segFeatureTree, treeState, sLineIdx, eLineIdx, treeValue, treeNodes);
SCANLINE_RECORD(SQO_semiCircleFeatureTree,
                treeState,
                treeType,
                sLineIdx,
                eLineIdx,
                treeRange,
                treeValue,
                treeValue2,
                treeTag,
                treeNodes);

SCANLINE_RECORD(SQO_treeGrowParam,
                yDeviation_max,
                zDeviation_max,
                maxLineSkipNum,
                maxSkipDistance,
                minLTypeTreeLen,
                minVTypeTreeLen);
SCANLINE_RECORD(SQO_bagParam, bagWidth, bagLength);
SCANLINE_RECORD(
    SQO_cornerParam, minEndingGap, minEndingGap_z, scale, cornerTh, jumpCornerTh_1, jumpCornerTh_2);
SCANLINE_RECORD(SQO_slopeParam, scale, minSlope_z, jumpTh_z, maxGap_y);
SCANLINE_RECORD(SQO_VFeatureParam, apexDiff_z, maxWidth_y);
SCANLINE_RECORD(SQO_lineRightAngleParam, flatArmLen, steepArmLen, armTol);
SCANLINE_RECORD(SQO_gloveArcParam, scale, armLen, minTurnAngle);
SCANLINE_RECORD(SQO_raisedFeatureParam, minJumpZ, minJumpK, minWidth, maxWidth);
SCANLINE_RECORD(SQO_lineSegParam, segGapTh_y, segGapTh_z, maxDist);
SCANLINE_RECORD(SQO_outlierFilterParam, continuityTh, outlierTh);
SCANLINE_RECORD(SQO_localPkParam, blockWidth, blockHeight);

SCANLINE_RECORD(SQO_featureClusteringInfo,
                featureFlag,
                userWord1,
                userWord2,
                clusterID,
                queued,
                userWord3,
                userWord4);
SCANLINE_RECORD(SQO_Region, roi, ptCounter, labelID);
SCANLINE_RECORD(SQO_contourPtInfo, x, y, type, edgeId, sideFlag, scanDist, edgePt);
SCANLINE_RECORD(SQO_lineConotours, lineIdx, contourPts);
SCANLINE_RECORD(SQO_conotourPair,
                pairTag,
                edgeId_1,
                edgeId_2,
                pairReserved,
                pairReservedD,
                contourPt_1,
                contourPt_2);

}  // namespace binding
